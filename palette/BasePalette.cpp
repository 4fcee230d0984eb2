// SPDX-License-Identifier: Apache-2.0
#include "palette/PaletteRow.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <array>

namespace zel::inline v1 {
namespace {

using enum ZelStyleAttribute;

constexpr PaletteRow ramp(ZelStyleAttribute attribute, double dark, double other) {
    return whenAbsent(attribute, white(dark), white(other));
}

std::optional<NSColor> platformWhite() {
    return NSColor::whiteColor();
}
std::optional<NSColor> platformBlack() {
    return NSColor::blackColor();
}
std::optional<NSColor> platformClear() {
    return NSColor::clearColor();
}

// Order is meaning: the platform's hues replace whatever stood there, also with nothing where the
// platform has none, and only then do the fallbacks fill what is absent.
//
// Deliberate: the dark ramp is not the other one mirrored; it ends at 0.22 and 0.12.
constexpr std::array baseRows{
    always(BlueColor, platform([] { return NSColor::systemBlueColor(); })),
    always(GreenColor, platform([] { return NSColor::systemGreenColor(); })),
    always(OrangeColor, platform([] { return NSColor::systemOrangeColor(); })),
    always(PurpleColor, platform([] { return NSColor::systemPurpleColor(); })),
    always(RedColor, platform([] { return NSColor::systemRedColor(); })),
    always(YellowColor, platform([] { return NSColor::systemYellowColor(); })),
    always(PinkColor, platform([] { return NSColor::systemPinkColor(); })),
    whenAbsent(BlackColor, platform(platformBlack)),
    whenAbsent(WhiteColor, platform(platformWhite)),
    ramp(GrayColor, 0.95, 0.1),
    ramp(GrayColor2, 0.82, 0.2),
    ramp(GrayColor3, 0.7, 1.0 / 3.0),
    ramp(GrayColor4, 2.0 / 3.0, 0.38),
    ramp(GrayColor5, 0.5, 0.5),
    ramp(GrayColor6, 0.38, 2.0 / 3.0),
    ramp(GrayColor7, 1.0 / 3.0, 0.7),
    ramp(GrayColor8, 0.22, 0.82),
    ramp(GrayColor9, 0.12, 0.95),
    whenAbsent(BlueColor, sRGB(0.0, 122.0 / 255.0, 1.0)),
    whenAbsent(GreenColor, sRGB(52.0 / 255.0, 199.0 / 255.0, 89.0 / 255.0)),
    whenAbsent(OrangeColor, sRGB(1.0, 149.0 / 255.0, 0.0)),
    whenAbsent(PurpleColor, sRGB(175.0 / 255.0, 82.0 / 255.0, 222.0 / 255.0)),
    whenAbsent(RedColor, sRGB(1.0, 59.0 / 255.0, 48.0 / 255.0)),
    whenAbsent(YellowColor, sRGB(1.0, 204.0 / 255.0, 0.0)),
    whenAbsent(IndigoColor, sRGB(88.0 / 255.0, 86.0 / 255.0, 214.0 / 255.0)),
    whenAbsent(PinkColor, sRGB(1.0, 45.0 / 255.0, 85.0 / 255.0)),
    whenAbsent(TealColor, sRGB(90.0 / 255.0, 200.0 / 255.0, 250.0 / 255.0)),
    whenAbsent(ClearColor, platform(platformClear)),
};

ZelStyleType typeOfScheme(const std::optional<std::string>& identifier) {
    if (identifier == ZelStyleSchemeIdentifierDark) {
        return ZelStyleTypeDark;
    }
    return identifier == ZelStyleSchemeIdentifierLight ? ZelStyleTypeLight : ZelStyleTypeCustom;
}

void provideBase(const std::shared_ptr<ZelStyle>& style,
                 const std::shared_ptr<ZelStyleScheme>& scheme) {
    const ZelStyleType type = typeOfScheme(scheme ? scheme->identifier() : std::nullopt);
    PaletteValues values = presetsOf(*style);
    values.written[static_cast<std::size_t>(StyleType)] = NSNumber::numberWithUnsignedLong(type);
    computePalette(baseRows, values, type == ZelStyleTypeDark);
    writePalette(*style, values);
}

} // namespace

void ZelStyle::load() {
    loadBase();
    loadMain();
}

void ZelStyle::loadBase() {
    addDefaultValueProvider(ZelStyleDefaultValueProvider::providerWithIdentifier(
        ZelStyleDefaultValueProviderIdentifierBase, std::nullopt, provideBase));
}

} // namespace zel::inline v1
