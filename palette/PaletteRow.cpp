// SPDX-License-Identifier: Apache-2.0
#include "palette/PaletteRow.h"

#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {
namespace {

using Value = std::optional<ZelAttributeValue>;

Value colorValue(const std::optional<NSColor>& color) {
    return color ? Value(*color) : std::nullopt;
}

std::optional<NSColor> colorOf(const ZelStyle& style, ZelStyleAttribute attribute) {
    return ZelStyleInternals::predefinedSlot(style, attribute).asColor();
}

/// What the recipe makes for a style; nothing where a colour that it needs is missing.
Value make(const PaletteRecipe& recipe, const ZelStyle& style, bool darkMode) {
    const ZelRGBA& c = recipe.components;
    switch (recipe.kind) {
    case PaletteRecipe::Kind::White:
        return NSColor::colorWithWhite(c.red, c.alpha);
    case PaletteRecipe::Kind::SRGB:
        return NSColor::colorWithSRGBRed(c.red, c.green, c.blue, c.alpha);
    case PaletteRecipe::Kind::Platform:
        return colorValue(recipe.platform());
    case PaletteRecipe::Kind::Copy:
        return style.effectiveValueForAttribute(ZelStyleAttributeKeyOf(recipe.source));
    case PaletteRecipe::Kind::CopyAlpha:
        if (const auto color = colorOf(style, recipe.source)) {
            return color->colorWithAlphaComponent(c.alpha);
        }
        return std::nullopt;
    case PaletteRecipe::Kind::Effect:
        if (const auto color = colorOf(style, recipe.source)) {
            return color->colorWithZelStyleEffect(recipe.effect, darkMode);
        }
        return std::nullopt;
    }
    return std::nullopt;
}

// A value of any kind counts, also one that the typed accessor doesn't answer: it is a client's.
bool hasValue(const ZelStyle& style, ZelStyleAttribute attribute) {
    const auto tag = ZelStyleInternals::predefinedSlot(style, attribute).tag;
    return tag != AttributeSlot::absent && tag != AttributeSlot::null;
}

} // namespace

void writePalette(std::span<const PaletteRow> rows, const std::shared_ptr<ZelStyle>& style,
                  bool darkMode) {
    for (const PaletteRow& row : rows) {
        if (row.written == PaletteRow::Written::WhenAbsent && hasValue(*style, row.attribute)) {
            continue;
        }
        ZelStyleInternals::setValueAt(*style, static_cast<AttributeIndex>(row.attribute),
                                      make(darkMode ? row.dark : row.other, *style, darkMode));
    }
}

} // namespace v1
} // namespace zel
