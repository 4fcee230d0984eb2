// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtColor.h>

#include <QColor>

#include <algorithm>
#include <cmath>

namespace zel::inline v1 {
namespace {

// Of the 256 steps that Qt paints in, the nearest: it would cut what lies between two of them. Not
// a number becomes 0.
int component(double value) {
    return value > 0 ? static_cast<int>(std::lround(255 * std::min(value, 1.0))) : 0;
}

} // namespace

QColor ZelQColorWithColor(const std::optional<NSColor>& color) {
    const auto rgba = color ? color->sRGBComponents() : std::nullopt;
    if (!rgba) {
        return {};
    }
    return {component(rgba->red), component(rgba->green), component(rgba->blue),
            component(rgba->alpha)};
}

std::optional<NSColor> ZelColorWithQColor(const QColor& color) {
    if (!color.isValid()) {
        return std::nullopt;
    }
    const QColor rgb = color.toRgb();
    return NSColor::colorWithSRGBRed(
        static_cast<double>(rgb.redF()), static_cast<double>(rgb.greenF()),
        static_cast<double>(rgb.blueF()), static_cast<double>(rgb.alphaF()));
}

} // namespace zel::inline v1
