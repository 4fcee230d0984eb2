// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zel::tool {

/// A colour as whole sRGB bytes, straight alpha.
struct ColorBytes {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;
};

/// Each component held to 0..1 and rounded to the nearest byte; what is not a number counts as 0.
[[nodiscard]] ColorBytes bytesOf(const ZelRGBA& color);

/// "#RRGGBBAA"
[[nodiscard]] std::string hexOf(const ZelRGBA& color);
/// "#RRGGBB" for an opaque colour, "#RRGGBBAA" for any other.
[[nodiscard]] std::string shortHexOf(const ZelRGBA& color);
/// Reads "#RRGGBB"; nothing where it is written in another way.
[[nodiscard]] std::optional<ZelRGBA> colorFromHex(std::string_view text);

/// Two terminal cells of a colour as it looks on a background, in 24-bit colour. Only the
/// background colour is set and all is reset after it.
[[nodiscard]] std::string swatchOf(const ZelRGBA& color, const ZelRGBA& background);

/// The text, filled up with spaces to a width in characters of one byte.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);

} // namespace zel::tool
