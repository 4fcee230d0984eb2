// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>

/// The library's observable behaviour once more, as plainly as it can be said: standard containers,
/// no locks, no caches but those that can be observed, nothing shared with the library.
namespace plain {

/// A colour: its space and components, alpha the last one.
struct Color {
    enum Space { SRGB, Device, Gray, CMYK } space = SRGB;
    std::array<double, 5> parts{};

    static Color colorWithSRGBRed(double red, double green, double blue, double alpha) {
        return {SRGB, {red, green, blue, alpha}};
    }
    static Color colorWithDeviceRed(double red, double green, double blue, double alpha) {
        return {Device, {red, green, blue, alpha}};
    }
    static Color colorWithWhite(double level, double alpha) { return {Gray, {level, alpha}}; }
    static Color colorWithDeviceCyan(double cyan, double magenta, double yellow, double black,
                                     double alpha) {
        return {CMYK, {cyan, magenta, yellow, black, alpha}};
    }

    Color colorWithAlphaComponent(double alpha) const;
    Color colorWithZelStyleEffect(unsigned long effect, bool darkMode) const;
    std::optional<Color> modifiableColor() const;
    /// Encoded red, green, blue, alpha; none for CMYK.
    std::optional<std::array<double, 4>> toSRGB() const;
};

/// What stands under a key; `monostate` is the null marker.
using Value = std::variant<std::monostate, Color, std::uint64_t, std::string>;
using Values = std::map<std::string, Value>;

} // namespace plain
