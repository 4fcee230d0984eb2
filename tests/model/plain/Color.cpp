// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Color.h"

#include <cmath>

namespace plain {

Color srgb(double red, double green, double blue, double alpha) {
    return {Color::SRGB, {red, green, blue, alpha}};
}

Color white(double level, double alpha) {
    return {Color::Gray, {level, alpha}};
}

Color withAlpha(Color color, double alpha) {
    color.parts[color.space == Color::Gray ? 1 : color.space == Color::CMYK ? 4 : 3] = alpha;
    return color;
}

std::optional<std::array<double, 4>> toSRGB(const Color& color) {
    const auto& p = color.parts;
    if (color.space == Color::CMYK) {
        return std::nullopt;
    }
    if (color.space != Color::Gray) {
        return std::array{p[0], p[1], p[2], p[3]};
    }
    const double linear = std::pow(p[0], 2.2);
    const double level = p[0] == 0 || p[0] == 1 ? p[0]
                         : linear <= 0.0031308  ? 12.92 * linear
                                                : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return std::array{level, level, level, p[1]};
}

Color withEffect(const Color& color, unsigned long effect, bool dark) {
    if (effect == 0) {
        return color;
    }
    auto parts = toSRGB(color).value_or(std::array<double, 4>{});
    const double factor = effect == 1   ? (dark ? 1.1 : 0.9)
                          : effect == 2 ? (dark ? 1.1 : 0.8)
                          : effect == 4 ? 0.95
                                        : 1;
    for (std::size_t i = 0; i < 3; ++i) {
        parts[i] *= factor;
    }
    parts[3] *= effect == 3 ? 0.5 : 1;
    for (double& part : parts) {
        part = part < 0 ? 0 : part > 1 ? 1 : part;
    }
    return srgb(parts[0], parts[1], parts[2], parts[3]);
}

std::optional<Color> modifiable(const Color& color) {
    const auto parts = toSRGB(color);
    if (!parts) {
        return std::nullopt; // five components can't be read blindly
    }
    return Color{Color::Device, {(*parts)[0], (*parts)[1], (*parts)[2], (*parts)[3]}};
}

} // namespace plain
