// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Color.h"

#include <cmath>

namespace plain {

Color Color::colorWithAlphaComponent(double alpha) const {
    Color color = *this;
    color.parts[space == Gray ? 1 : space == CMYK ? 4 : 3] = alpha;
    return color;
}

std::optional<std::array<double, 4>> Color::toSRGB() const {
    if (space == CMYK) {
        return std::nullopt;
    }
    if (space != Gray) {
        return std::array{parts[0], parts[1], parts[2], parts[3]};
    }
    const double linear = std::pow(parts[0], 2.2);
    const double level = parts[0] == 0 || parts[0] == 1 ? parts[0]
                         : linear <= 0.0031308          ? 12.92 * linear
                                                        : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return std::array{level, level, level, parts[1]};
}

Color Color::colorWithZelStyleEffect(unsigned long effect, bool darkMode) const {
    if (effect == 0) {
        return *this;
    }
    auto changed = toSRGB().value_or(std::array<double, 4>{});
    const double factor = effect == 1   ? (darkMode ? 1.1 : 0.9)
                          : effect == 2 ? (darkMode ? 1.1 : 0.8)
                          : effect == 4 ? 0.95
                                        : 1;
    for (std::size_t i = 0; i < 3; ++i) {
        changed[i] *= factor;
    }
    changed[3] *= effect == 3 ? 0.5 : 1;
    for (double& part : changed) {
        part = part < 0 ? 0 : part > 1 ? 1 : part;
    }
    return colorWithSRGBRed(changed[0], changed[1], changed[2], changed[3]);
}

std::optional<Color> Color::modifiableColor() const {
    const auto found = toSRGB();
    if (!found) {
        return std::nullopt; // five components can't be read blindly
    }
    return colorWithDeviceRed((*found)[0], (*found)[1], (*found)[2], (*found)[3]);
}

} // namespace plain
