// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/palette/PaletteFormats.h"

#include "tools/zelstyle/terminal/ColorText.h"

#include <nlohmann/json.hpp>

namespace zel::tool {
namespace {

using nlohmann::ordered_json;

ordered_json attributeOf(const PaletteEntry& entry, std::string_view group) {
    ordered_json attribute{{"key", entry.key}, {"group", group}};
    if (const ZelRGBA* color = entry.color()) {
        attribute["kind"] = "color";
        attribute["hex"] = hexOf(*color);
        attribute["srgb"] = {color->red, color->green, color->blue, color->alpha};
    } else if (const std::uint64_t* number = entry.number()) {
        attribute["kind"] = "number";
        attribute["value"] = *number;
    } else {
        attribute["kind"] = nullptr;
    }
    return attribute;
}

} // namespace

std::string paletteJson(const std::vector<Palette>& palettes) {
    ordered_json schemes = ordered_json::array();
    for (const Palette& palette : palettes) {
        ordered_json attributes = ordered_json::array();
        for (const PaletteHeading& heading : paletteHeadings) {
            for (const PaletteEntry& entry : palette.entries) {
                if (entry.group == heading.group) {
                    attributes.push_back(attributeOf(entry, heading.name));
                }
            }
        }
        schemes.push_back({{"scheme", palette.scheme}, {"attributes", std::move(attributes)}});
    }
    return ordered_json{{"schemes", std::move(schemes)}}.dump(2) + '\n';
}

} // namespace zel::tool
