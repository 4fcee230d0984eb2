// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/palette/PaletteFormats.h"

#include "tools/zelstyle/terminal/ColorText.h"

#include <ZelStyleKit/ZelStyleAttributes.h>

namespace zel::tool {
namespace {

constexpr std::size_t keyWidth = 38;
constexpr std::size_t valueWidth = 12;
constexpr std::size_t swatchCells = 3; // two cells and a space

std::string cellOf(const Palette& palette, const PaletteEntry& entry, bool withColors) {
    std::string cell;
    if (withColors) {
        const ZelRGBA* color = entry.color();
        const ZelRGBA background = palette.colorFor(ZelStyleAttributeKeyBackgroundColor);
        cell = color ? swatchOf(*color, background) + ' ' : std::string(swatchCells, ' ');
    }
    return cell + padded(entry.text(), valueWidth);
}

void appendLine(std::string& text, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

} // namespace

std::string paletteText(const std::vector<Palette>& palettes, bool withColors) {
    std::string text;
    for (const PaletteHeading& heading : paletteHeadings) {
        std::string line = padded(heading.title, keyWidth + 2);
        for (const Palette& palette : palettes) {
            line += padded(palette.scheme, valueWidth + (withColors ? swatchCells : 0));
        }
        appendLine(text, line);
        for (std::size_t row = 0; row < palettes.front().entries.size(); ++row) {
            if (palettes.front().entries[row].group != heading.group) {
                continue;
            }
            line = "  " + padded(palettes.front().entries[row].key, keyWidth);
            for (const Palette& palette : palettes) {
                line += cellOf(palette, palette.entries[row], withColors);
            }
            appendLine(text, line);
        }
    }
    return text;
}

} // namespace zel::tool
