// SPDX-License-Identifier: Apache-2.0
#include "palette/PaletteRow.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <array>

namespace zel::inline v1 {
namespace {

using enum ZelStyleAttribute;

std::optional<NSColor> windowBackground() {
    return NSColor::windowBackgroundColor();
}

// Order is meaning: a row reads what the rows above it wrote. The first nine can be preset;
// deliberate: every later row is computed anew whatever stood there.
constexpr std::array mainRows{
    whenAbsent(BackgroundColor, sRGBGray(0.0), sRGBGray(1.0)),
    whenAbsent(BackgroundColorSecondary, sRGBGray(28.0 / 255.0), platform(windowBackground)),
    whenAbsent(BackgroundColorTertiary, sRGBGray(44.0 / 255.0), sRGBGray(1.0)),
    whenAbsent(LabelColor, sRGBGray(1.0), sRGBGray(0.0)),
    whenAbsent(LabelColorSecondary, sRGBGray(0.92, 0.96), sRGBGray(0.24, 0.6)),
    whenAbsent(LabelColorTertiary, sRGBGray(0.92, 0.3), sRGBGray(0.24, 0.3)),
    whenAbsent(LabelColorQuarternary, sRGBGray(0.92, 0.16), sRGBGray(0.24, 0.18)),
    whenAbsent(AccentColor, copyOf(BlueColor), copyOf(BlueColor)),
    whenAbsent(AccentColorSecondary, copyWithAlpha(AccentColor, 0.25),
               copyWithAlpha(AccentColor, 0.15)),
    always(ControlColor, copyOf(AccentColor)),
    always(ControlLabelColor, copyOf(WhiteColor)),
    always(ControlColorInactive, sRGBGray(0.8), sRGBGray(0.6)),
    always(ControlLabelColorInactive, copyOf(ControlLabelColor)),
    always(ControlColorUnselected, copyOf(GrayColor)),
    always(ControlLabelColorUnselected, copyOf(BlackColor)),
    always(ControlColorDestructive, copyOf(RedColor)),
    always(ControlLabelColorDestructive, copyOf(WhiteColor)),
    always(SeparatorColor, copyOf(LabelColorTertiary)),
    always(SeparatorColorContent, copyOf(LabelColorQuarternary)),
    always(OverlayTableBackgroundColor, copyOf(GrayColor9), copyOf(WhiteColor)),
    always(OverlayTableBackgroundSelectedColor,
           withEffect(OverlayTableBackgroundColor, ZelStyleEffectSelected)),
    always(TableBackgroundColor, copyOf(BackgroundColor)),
    always(TableBackgroundSelectedColor, withEffect(BackgroundColor, ZelStyleEffectSelected)),
    always(TableTextColor, copyOf(WhiteColor), copyOf(BlackColor)),
    always(TableTextSelectedColor, copyOf(TableTextColor)),
    always(TableSectionHeaderTextColor, copyOf(LabelColor)),
    always(TableSectionHeaderBackgroundColor, copyOf(GrayColor8), copyOf(GrayColor9)),
    always(NavigationBarTextColor, copyOf(WhiteColor), copyOf(BlackColor)),
    always(NavigationBarTintColor, copyOf(AccentColor)),
    always(NavigationBarBackgroundColor, copyOf(GrayColor9), white(0.9725)),
    always(ToolbarTextColor, copyOf(WhiteColor), copyOf(BlackColor)),
    always(ToolbarTintColor, copyOf(AccentColor)),
    always(ToolbarBackgroundColor, copyOf(GrayColor9), white(0.9725)),
};
static_assert(mainRows.size() == 33);

void provideMain(const std::shared_ptr<ZelStyle>& style,
                 const std::shared_ptr<ZelStyleScheme>& scheme) {
    const bool darkMode = scheme && scheme->identifier() == ZelStyleSchemeIdentifierDark;
    PaletteValues values = presetsOf(*style);
    computePalette(mainRows, values, darkMode);
    writePalette(*style, values);
}

} // namespace

void ZelStyle::loadMain() {
    addDefaultValueProvider(ZelStyleDefaultValueProvider::providerWithIdentifier(
        ZelStyleDefaultValueProviderIdentifierMain,
        std::vector<std::string>{std::string(ZelStyleDefaultValueProviderIdentifierBase)},
        provideMain));
}

} // namespace zel::inline v1
