// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSColor.h>

namespace zel::inline v1 {
namespace {

void scaleRGB(ZelRGBA& color, double factor) {
    color.red *= factor;
    color.green *= factor;
    color.blue *= factor;
}

void applyEffect(ZelRGBA& color, unsigned long effect, bool darkMode) {
    switch (effect) {
    case ZelStyleEffectSelected:
        scaleRGB(color, darkMode ? 1.1 : 0.9);
        break;
    case ZelStyleEffectShade:
        scaleRGB(color, darkMode ? 1.1 : 0.8);
        break;
    case ZelStyleEffectHalfAlpha:
        color.alpha *= 0.5;
        break;
    case ZelStyleEffectDim:
        scaleRGB(color, 0.95);
        break;
    default:
        break; // Deliberate: an unknown effect still rebuilds the colour as sRGB.
    }
}

// Deliberate: two ordered comparisons, so that what is not a number passes unchanged.
double clamped(double component) {
    if (component < 0) {
        return 0;
    }
    return component > 1 ? 1 : component;
}

} // namespace

NSColor NSColor::colorWithZelStyleEffect(unsigned long effect, bool darkMode) const noexcept {
    if (effect == ZelStyleEffectNone) {
        return *this;
    }
    ZelRGBA color = sRGBComponents().value_or(ZelRGBA{0, 0, 0, 0});
    applyEffect(color, effect, darkMode);
    return colorWithSRGBRed(clamped(color.red), clamped(color.green), clamped(color.blue),
                            clamped(color.alpha));
}

NSColor NSColor::colorWithZelStyleEffect(unsigned long effect) const noexcept {
    return colorWithZelStyleEffect(effect, false);
}

std::optional<NSColor> NSColor::modifiableColor() const noexcept {
    if (const auto converted = colorUsingColorSpace(NSColorSpace::deviceRGBColorSpace())) {
        return converted;
    }
    const Components& p = components_;
    // Deliberate: the count alone decides, whatever the components mean in their own space.
    switch (numberOfComponents()) {
    case 1:
        return colorWithDeviceRed(p[0], p[0], p[0], 1);
    case 2:
        return colorWithDeviceRed(p[0], p[0], p[0], p[1]);
    case 3:
        return colorWithDeviceRed(p[0], p[1], p[2], 1);
    case 4:
        return colorWithDeviceRed(p[0], p[1], p[2], p[3]);
    default:
        return std::nullopt;
    }
}

} // namespace zel::inline v1
