// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/palette/Palette.h"

#include <string>
#include <vector>

namespace zel::tool {

/// The ways to write palettes, side by side where there are several; the same palettes always give
/// the same text.

/// Lines for a terminal, with coloured cells where wanted.
[[nodiscard]] std::string paletteText(const std::vector<Palette>& palettes, bool withColors);
/// {"schemes": [{"scheme", "attributes": [{"key", "group", "kind", and "value" or "hex",
/// "srgb"}]}]}
[[nodiscard]] std::string paletteJson(const std::vector<Palette>& palettes);
/// A picture: a grid of labelled swatches.
[[nodiscard]] std::string paletteSvg(const std::vector<Palette>& palettes);

} // namespace zel::tool
