// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/palette/PaletteFormats.h"

#include "tools/zelstyle/terminal/ColorText.h"

#include <ZelStyleKit/ZelStyleScheme.h>

#include <cstdio>

namespace zel::tool {
namespace {

// Lengths in user units, of which a picture shown at its own size has one a pixel.
constexpr int columns = 3;
constexpr int margin = 40;
constexpr int cellWidth = 352;
constexpr int cellHeight = 62;
constexpr int swatchWidth = 88;
constexpr int swatchHeight = 46;
constexpr int titleHeight = 60;
constexpr int headingHeight = 50;
constexpr int pictureWidth = 2 * margin + columns * cellWidth - 10;

// The fixed part of every picture: how text looks, the outline of a swatch, and what lies under
// translucent colours, for light surroundings and for dark ones.
constexpr std::string_view definitions = R"svg(<style>
text { font-family: system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, "DejaVu Sans", sans-serif; fill: #1D1D1F }
.title { font-size: 26px; font-weight: 700 }
.note { font-size: 14px; fill: #6E6E73 }
.heading { font-size: 17px; font-weight: 600 }
.key { font-size: 12.5px; font-weight: 600 }
.value { font-size: 11.5px; fill: #6E6E73; font-family: ui-monospace, SFMono-Regular, Menlo, Consolas, "DejaVu Sans Mono", monospace }
.number { font-size: 17px; font-weight: 600; text-anchor: middle }
.on-dark { fill: #F5F5F7 }
</style>
<defs>
<clipPath id="swatch"><rect width="88" height="46" rx="9"/></clipPath>
<pattern id="under-light" width="12" height="12" patternUnits="userSpaceOnUse"><rect width="12" height="12" fill="#FFFFFF"/><path d="M0 0h6v6h-6zM6 6h6v6h-6z" fill="#DCDCE0"/></pattern>
<pattern id="under-dark" width="12" height="12" patternUnits="userSpaceOnUse"><rect width="12" height="12" fill="#1C1C1E"/><path d="M0 0h6v6h-6zM6 6h6v6h-6z" fill="#3A3A3C"/></pattern>
</defs>
)svg";

std::string number(double value) {
    char digits[32];
    const int length = std::snprintf(digits, sizeof digits, "%.4g", value);
    return {digits, static_cast<std::size_t>(length)};
}

std::string translated(int x, int y) {
    return "<g transform=\"translate(" + std::to_string(x) + ' ' + std::to_string(y) + ")\">\n";
}

std::string rectangle(int x, int width, std::string_view attributes) {
    std::string text = "<rect x=\"" + std::to_string(x) + "\" width=\"" + std::to_string(width);
    return text + "\" height=\"" + std::to_string(swatchHeight) + "\" " + std::string(attributes) +
           "/>\n";
}

std::string label(int x, int y, std::string_view style, std::string_view text) {
    return "<text class=\"" + std::string(style) + "\" x=\"" + std::to_string(x) + "\" y=\"" +
           std::to_string(y) + "\">" + std::string(text) + "</text>\n";
}

/// One scheme's part of a swatch. It reaches to the swatch's end, and the next one is drawn over
/// it: no seam shows where the two are of the same colour.
std::string stripe(const PaletteEntry& entry, bool isDark, int x, int width) {
    const int reach = swatchWidth - x;
    const ZelRGBA* color = entry.color();
    if (!color) {
        return rectangle(x, reach, isDark ? "fill=\"#2C2C2E\"" : "fill=\"#F2F2F7\"") +
               label(x + width / 2, 29, isDark ? "number on-dark" : "number", entry.text());
    }
    std::string text;
    std::string fill = "fill=\"" + shortHexOf({color->red, color->green, color->blue, 1}) + '"';
    if (bytesOf(*color).alpha != 255) {
        text = rectangle(x, reach,
                         isDark ? "fill=\"url(#under-dark)\"" : "fill=\"url(#under-light)\"");
        fill += " fill-opacity=\"" + number(color->alpha) + '"';
    }
    return text + rectangle(x, reach, fill);
}

/// An attribute: its swatch, a stripe for each scheme, then its key above its values.
std::string cell(const std::vector<Palette>& palettes, std::size_t row, int x, int y) {
    const int width = swatchWidth / static_cast<int>(palettes.size());
    std::string stripes;
    std::string values;
    bool differs = false;
    for (std::size_t i = 0; i < palettes.size(); ++i) {
        const PaletteEntry& entry = palettes[i].entries[row];
        const bool isDark = palettes[i].scheme == ZelStyleSchemeIdentifierDark;
        stripes += stripe(entry, isDark, static_cast<int>(i) * width, width);
        differs = differs || entry.text() != palettes.front().entries[row].text();
        values += (i == 0 ? "" : " / ") + entry.text();
    }
    values = differs ? values : palettes.front().entries[row].text();
    return translated(x, y) + "<g clip-path=\"url(#swatch)\">\n" + stripes + "</g>\n" +
           rectangle(0, swatchWidth,
                     R"(rx="9" fill="none" stroke="#8E8E93" stroke-opacity="0.45")") +
           label(swatchWidth + 12, 20, "key", palettes.front().entries[row].key) +
           label(swatchWidth + 12, 38, "value", values) + "</g>\n";
}

/// What the picture shows, in a sentence.
std::string captionOf(const std::vector<Palette>& palettes) {
    const std::string count = std::to_string(palettes.front().entries.size());
    if (palettes.size() == 1) {
        return count + " attributes in the scheme " + palettes.front().scheme;
    }
    return count + " attributes, each in the scheme " + palettes.front().scheme +
           " (left) and in the scheme " + palettes.back().scheme + " (right)";
}

std::string beginning(int pictureHeight, const std::string& caption) {
    const std::string width = std::to_string(pictureWidth);
    const std::string height = std::to_string(pictureHeight);
    std::string text = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + width;
    text += R"(" height=")" + height + R"(" viewBox="0 0 )" + width + ' ' + height;
    text += R"(" role="img" aria-label=")" + caption + "\">\n";
    text += definitions;
    text += R"(<rect x="0.5" y="0.5" width=")" + std::to_string(pictureWidth - 1);
    text += R"(" height=")" + std::to_string(pictureHeight - 1);
    return text + R"(" rx="14" fill="#FFFFFF" stroke="#E5E5EA"/>)" + '\n';
}

} // namespace

std::string paletteSvg(const std::vector<Palette>& palettes) {
    const std::vector<PaletteEntry>& entries = palettes.front().entries;
    const std::string caption = captionOf(palettes);
    std::string body = label(margin, margin + 22, "title", "ZelStyleKit palettes") +
                       label(margin, margin + 46, "note", caption);
    int y = margin + titleHeight;
    for (const PaletteHeading& heading : paletteHeadings) {
        body += label(margin, y + 30, "heading", heading.title);
        y += headingHeight;
        int column = 0;
        for (std::size_t row = 0; row < entries.size(); ++row) {
            if (entries[row].group == heading.group) {
                body += cell(palettes, row, margin + column * cellWidth, y);
                column = (column + 1) % columns;
                y += column == 0 ? cellHeight : 0;
            }
        }
        y += column == 0 ? 0 : cellHeight;
    }
    return beginning(y + margin - (cellHeight - swatchHeight), caption) + body + "</svg>\n";
}

} // namespace zel::tool
