// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtColor.h>

#include <QColor>

namespace zel {
inline namespace v1 {
namespace {

// Not a number becomes 0.
float component(double value) {
    return value > 0 ? static_cast<float>(value < 1 ? value : 1) : 0.0F;
}

} // namespace

QColor ZelQColorWithColor(const std::optional<NSColor>& color) {
    const auto rgba = color ? color->sRGBComponents() : std::nullopt;
    if (!rgba) {
        return {};
    }
    return QColor::fromRgbF(component(rgba->red), component(rgba->green), component(rgba->blue),
                            component(rgba->alpha));
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

} // namespace v1
} // namespace zel
