// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <QPalette>

namespace zel::inline v1 {

/// Which attribute fills a role of the palette, and which while the widget is disabled. Inactive
/// windows look as active ones do, as is usual on the desktops that Qt's own style is for.
struct PaletteRole {
    QPalette::ColorRole role;
    ZelStyleAttribute attribute;
    ZelStyleAttribute disabled;
};

using enum ZelStyleAttribute;

// The grey ramp runs from strong to faint against the background, in both schemes.
inline constexpr PaletteRole paletteRoles[] = {
    {QPalette::Window, BackgroundColorSecondary, BackgroundColorSecondary},
    {QPalette::WindowText, LabelColor, LabelColorTertiary},
    {QPalette::Base, BackgroundColor, BackgroundColorSecondary},
    {QPalette::AlternateBase, GrayColor9, GrayColor9},
    {QPalette::Text, LabelColor, LabelColorTertiary},
    {QPalette::PlaceholderText, LabelColorTertiary, LabelColorQuarternary},
    {QPalette::ToolTipBase, BackgroundColorTertiary, BackgroundColorTertiary},
    {QPalette::ToolTipText, LabelColor, LabelColor},
    {QPalette::Button, BackgroundColorTertiary, BackgroundColorSecondary},
    {QPalette::ButtonText, LabelColor, LabelColorTertiary},
    {QPalette::BrightText, ControlColorDestructive, ControlColorDestructive},
    {QPalette::Highlight, AccentColor, GrayColor7},
    {QPalette::HighlightedText, ControlLabelColor, ControlLabelColorInactive},
    {QPalette::Link, AccentColor, LabelColorTertiary},
    {QPalette::LinkVisited, PurpleColor, LabelColorTertiary},
    {QPalette::Light, BackgroundColorTertiary, BackgroundColorTertiary},
    {QPalette::Midlight, GrayColor9, GrayColor9},
    {QPalette::Mid, GrayColor7, GrayColor8},
    {QPalette::Dark, GrayColor6, GrayColor7},
    {QPalette::Shadow, BlackColor, BlackColor},
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    {QPalette::Accent, AccentColor, GrayColor7},
#endif
};

} // namespace zel::inline v1
