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
    friend bool operator==(const Color&, const Color&) = default;
};

Color srgb(double red, double green, double blue, double alpha);
Color white(double level, double alpha);
Color withAlpha(Color color, double alpha);
/// Encoded red, green, blue, alpha; none for CMYK.
std::optional<std::array<double, 4>> toSRGB(const Color& color);
Color withEffect(const Color& color, unsigned long effect, bool dark);
std::optional<Color> modifiable(const Color& color);

/// What stands under a key; `monostate` is the null marker.
using Value = std::variant<std::monostate, Color, std::uint64_t, std::string>;
using Values = std::map<std::string, Value>;

} // namespace plain
