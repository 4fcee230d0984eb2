// SPDX-License-Identifier: Apache-2.0
#include "palette/PaletteRow.h"

#include "style/ZelStyleInternals.h"

#include <vector>

namespace zel::inline v1 {
namespace {

ZelAttributeValue colorOrNull(const std::optional<NSColor>& color) {
    return color ? ZelAttributeValue(*color) : NSNull{};
}

const NSColor* findColor(const PaletteValues& values, ZelStyleAttribute attribute) {
    const ZelAttributeValue* value = values.find(attribute);
    return value ? value->color() : nullptr;
}

/// What the recipe makes; null where a colour that it needs is missing.
ZelAttributeValue make(const PaletteRecipe& recipe, const PaletteValues& values, bool darkMode) {
    const ZelRGBA& c = recipe.components;
    switch (recipe.kind) {
    case PaletteRecipe::Kind::White:
        return NSColor::colorWithWhite(c.red, c.alpha);
    case PaletteRecipe::Kind::SRGB:
        return NSColor::colorWithSRGBRed(c.red, c.green, c.blue, c.alpha);
    case PaletteRecipe::Kind::Platform:
        return colorOrNull(recipe.platform());
    case PaletteRecipe::Kind::Copy:
        if (const ZelAttributeValue* value = values.find(recipe.source)) {
            return *value;
        }
        return NSNull{};
    case PaletteRecipe::Kind::CopyAlpha:
        if (const NSColor* color = findColor(values, recipe.source)) {
            return color->colorWithAlphaComponent(c.alpha);
        }
        return NSNull{};
    case PaletteRecipe::Kind::Effect:
        if (const NSColor* color = findColor(values, recipe.source)) {
            return color->colorWithZelStyleEffect(recipe.effect, darkMode);
        }
        return NSNull{};
    }
    return NSNull{};
}

} // namespace

const ZelAttributeValue* PaletteValues::find(ZelStyleAttribute attribute) const noexcept {
    const auto at = static_cast<std::size_t>(attribute);
    const auto& value = written[at] ? written[at] : presets[at];
    return value && !value->isNull() ? &*value : nullptr;
}

void computePalette(std::span<const PaletteRow> rows, PaletteValues& values, bool darkMode) {
    for (const PaletteRow& row : rows) {
        if (row.written == PaletteRow::Written::Always || !values.find(row.attribute)) {
            values.written[static_cast<std::size_t>(row.attribute)] =
                make(darkMode ? row.dark : row.other, values, darkMode);
        }
    }
}

PaletteValues presetsOf(const ZelStyle& style) {
    PaletteValues values;
    for (std::size_t i = 0; i < values.presets.size(); ++i) {
        const auto attribute = static_cast<ZelStyleAttribute>(i);
        values.presets[i] = ZelStyleInternals::effectiveValue(style, attribute);
    }
    return values;
}

void writePalette(ZelStyle& style, const PaletteValues& values) {
    std::vector<ZelStyleInternals::Written> written;
    written.reserve(values.written.size());
    for (std::size_t i = 0; i < values.written.size(); ++i) {
        if (values.written[i]) {
            const auto attribute = static_cast<ZelStyleAttribute>(i);
            written.push_back({ZelStyleAttributeKeyOf(attribute), *values.written[i]});
        }
    }
    ZelStyleInternals::setValues(style, written);
}

} // namespace zel::inline v1
