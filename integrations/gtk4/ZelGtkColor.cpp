// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkColor.h>

#include <algorithm>

namespace zel::inline v1 {
namespace {

// What is not a number counts as none of the colour.
float channel(double component) noexcept {
    return component > 0 ? static_cast<float>(std::min(component, 1.0)) : 0.0F;
}

} // namespace

std::optional<GdkRGBA> ZelGdkRGBAWithColor(const NSColor& color) noexcept {
    const auto components = color.sRGBComponents();
    if (!components) {
        return std::nullopt;
    }
    return GdkRGBA{channel(components->red), channel(components->green), channel(components->blue),
                   channel(components->alpha)};
}

NSColor ZelColorWithGdkRGBA(const GdkRGBA& color) noexcept {
    return NSColor::colorWithSRGBRed(double{color.red}, double{color.green}, double{color.blue},
                                     double{color.alpha});
}

} // namespace zel::inline v1
