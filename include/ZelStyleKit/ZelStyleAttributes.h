// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <cstddef>
#include <optional>
#include <string_view>

/// The predefined attributes, each named once: X(key, Key, Kind, group), where `key` is the string,
/// `Key` the same with its first letter in upper case, Kind what it holds (Color or Number), and
/// group the palette that fills it. Constants, counts and the accessors' definitions are made from
/// this list; the accessors' declarations are written out, each with what the attribute is for.
/// Deliberate: "labelColorQuarternary" is spelt so; it is part of the public vocabulary.
#define ZEL_STYLE_ATTRIBUTES(X)                                                                    \
    X(styleType, StyleType, Number, Base)                                                          \
    X(grayColor, GrayColor, Color, Base)                                                           \
    X(grayColor2, GrayColor2, Color, Base)                                                         \
    X(grayColor3, GrayColor3, Color, Base)                                                         \
    X(grayColor4, GrayColor4, Color, Base)                                                         \
    X(grayColor5, GrayColor5, Color, Base)                                                         \
    X(grayColor6, GrayColor6, Color, Base)                                                         \
    X(grayColor7, GrayColor7, Color, Base)                                                         \
    X(grayColor8, GrayColor8, Color, Base)                                                         \
    X(grayColor9, GrayColor9, Color, Base)                                                         \
    X(whiteColor, WhiteColor, Color, Base)                                                         \
    X(blackColor, BlackColor, Color, Base)                                                         \
    X(clearColor, ClearColor, Color, Base)                                                         \
    X(blueColor, BlueColor, Color, Base)                                                           \
    X(greenColor, GreenColor, Color, Base)                                                         \
    X(orangeColor, OrangeColor, Color, Base)                                                       \
    X(purpleColor, PurpleColor, Color, Base)                                                       \
    X(redColor, RedColor, Color, Base)                                                             \
    X(yellowColor, YellowColor, Color, Base)                                                       \
    X(pinkColor, PinkColor, Color, Base)                                                           \
    X(indigoColor, IndigoColor, Color, Base)                                                       \
    X(tealColor, TealColor, Color, Base)                                                           \
    X(backgroundColor, BackgroundColor, Color, Main)                                               \
    X(backgroundColorSecondary, BackgroundColorSecondary, Color, Main)                             \
    X(backgroundColorTertiary, BackgroundColorTertiary, Color, Main)                               \
    X(labelColor, LabelColor, Color, Main)                                                         \
    X(labelColorSecondary, LabelColorSecondary, Color, Main)                                       \
    X(labelColorTertiary, LabelColorTertiary, Color, Main)                                         \
    X(labelColorQuarternary, LabelColorQuarternary, Color, Main)                                   \
    X(accentColor, AccentColor, Color, Main)                                                       \
    X(accentColorSecondary, AccentColorSecondary, Color, Main)                                     \
    X(controlColor, ControlColor, Color, Main)                                                     \
    X(controlLabelColor, ControlLabelColor, Color, Main)                                           \
    X(controlColorInactive, ControlColorInactive, Color, Main)                                     \
    X(controlLabelColorInactive, ControlLabelColorInactive, Color, Main)                           \
    X(controlColorUnselected, ControlColorUnselected, Color, Main)                                 \
    X(controlLabelColorUnselected, ControlLabelColorUnselected, Color, Main)                       \
    X(controlColorDestructive, ControlColorDestructive, Color, Main)                               \
    X(controlLabelColorDestructive, ControlLabelColorDestructive, Color, Main)                     \
    X(separatorColor, SeparatorColor, Color, Main)                                                 \
    X(separatorColorContent, SeparatorColorContent, Color, Main)                                   \
    X(overlayTableBackgroundColor, OverlayTableBackgroundColor, Color, Main)                       \
    X(overlayTableBackgroundSelectedColor, OverlayTableBackgroundSelectedColor, Color, Main)       \
    X(tableBackgroundColor, TableBackgroundColor, Color, Main)                                     \
    X(tableBackgroundSelectedColor, TableBackgroundSelectedColor, Color, Main)                     \
    X(tableTextColor, TableTextColor, Color, Main)                                                 \
    X(tableTextSelectedColor, TableTextSelectedColor, Color, Main)                                 \
    X(tableSectionHeaderTextColor, TableSectionHeaderTextColor, Color, Main)                       \
    X(tableSectionHeaderBackgroundColor, TableSectionHeaderBackgroundColor, Color, Main)           \
    X(navigationBarTextColor, NavigationBarTextColor, Color, Main)                                 \
    X(navigationBarTintColor, NavigationBarTintColor, Color, Main)                                 \
    X(navigationBarBackgroundColor, NavigationBarBackgroundColor, Color, Main)                     \
    X(toolbarTextColor, ToolbarTextColor, Color, Main)                                             \
    X(toolbarTintColor, ToolbarTintColor, Color, Main)                                             \
    X(toolbarBackgroundColor, ToolbarBackgroundColor, Color, Main)

namespace zel::inline v1 {

/// The predefined keys: `ZelStyleAttributeKeyBackgroundColor` holds "backgroundColor", and so on.
/// Modifiable variables that hold fixed strings; the typed accessors don't go by them.
#define ZEL_DECLARE_KEY(key, Key, Kind, group)                                                     \
    extern ZEL_EXPORT std::string_view ZelStyleAttributeKey##Key;
ZEL_STYLE_ATTRIBUTES(ZEL_DECLARE_KEY)
#undef ZEL_DECLARE_KEY

/// Where a predefined attribute stands in the list.
enum class ZelStyleAttribute : unsigned {
#define ZEL_ENUMERATE(key, Key, Kind, group) Key,
    ZEL_STYLE_ATTRIBUTES(ZEL_ENUMERATE)
#undef ZEL_ENUMERATE
};

/// How many attributes are predefined.
#define ZEL_COUNT(key, Key, Kind, group) +1
inline constexpr std::size_t ZelStyleAttributeCount = 0 ZEL_STYLE_ATTRIBUTES(ZEL_COUNT);
#undef ZEL_COUNT

/// The key string of a predefined attribute.
[[nodiscard]] ZEL_EXPORT std::string_view
ZelStyleAttributeKeyOf(ZelStyleAttribute attribute) noexcept;

/// The predefined attribute with that key string; nothing for any other key.
[[nodiscard]] ZEL_EXPORT std::optional<ZelStyleAttribute>
ZelStyleAttributeForKey(std::string_view key);

} // namespace zel::inline v1
