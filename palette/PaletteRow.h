// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/ZelAttributeValue.h>
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>
#include <optional>
#include <span>

namespace zel::inline v1 {

class ZelStyle;

/// How a palette makes one colour.
struct PaletteRecipe {
    enum class Kind {
        White,     ///< a grey: level, alpha
        SRGB,      ///< encoded sRGB: red, green, blue, alpha
        Platform,  ///< one of the platform's colours, which may be missing
        Copy,      ///< another attribute's value at that moment, unchanged
        CopyAlpha, ///< another attribute's colour with its alpha replaced
        Effect,    ///< another attribute's colour with an effect
    };
    using PlatformColor = std::optional<NSColor> (*)();

    Kind kind = Kind::Copy;
    ZelRGBA components{}; ///< a white level stands in red
    PlatformColor platform = nullptr;
    ZelStyleAttribute source{};
    unsigned long effect = ZelStyleEffectNone;
};

constexpr PaletteRecipe white(double level, double alpha = 1.0) {
    return {.kind = PaletteRecipe::Kind::White, .components = {level, level, level, alpha}};
}
constexpr PaletteRecipe sRGB(double red, double green, double blue, double alpha = 1.0) {
    return {.kind = PaletteRecipe::Kind::SRGB, .components = {red, green, blue, alpha}};
}
/// Red, green and blue alike.
constexpr PaletteRecipe sRGBGray(double value, double alpha = 1.0) {
    return sRGB(value, value, value, alpha);
}
constexpr PaletteRecipe platform(PaletteRecipe::PlatformColor color) {
    return {.kind = PaletteRecipe::Kind::Platform, .platform = color};
}
constexpr PaletteRecipe copyOf(ZelStyleAttribute source) {
    return {.kind = PaletteRecipe::Kind::Copy, .source = source};
}
constexpr PaletteRecipe copyWithAlpha(ZelStyleAttribute source, double alpha) {
    return {
        .kind = PaletteRecipe::Kind::CopyAlpha, .components = {0, 0, 0, alpha}, .source = source};
}
constexpr PaletteRecipe withEffect(ZelStyleAttribute source, unsigned long effect) {
    return {.kind = PaletteRecipe::Kind::Effect, .source = source, .effect = effect};
}

/// One attribute of a palette: when it is written, and with what in a dark and in any other scheme.
struct PaletteRow {
    enum class Written { WhenAbsent, Always };

    ZelStyleAttribute attribute;
    Written written;
    PaletteRecipe dark;
    PaletteRecipe other;
};

constexpr PaletteRow whenAbsent(ZelStyleAttribute attribute, PaletteRecipe dark,
                                PaletteRecipe other) {
    return {attribute, PaletteRow::Written::WhenAbsent, dark, other};
}
constexpr PaletteRow whenAbsent(ZelStyleAttribute attribute, PaletteRecipe both) {
    return whenAbsent(attribute, both, both);
}
constexpr PaletteRow always(ZelStyleAttribute attribute, PaletteRecipe dark, PaletteRecipe other) {
    return {attribute, PaletteRow::Written::Always, dark, other};
}
constexpr PaletteRow always(ZelStyleAttribute attribute, PaletteRecipe both) {
    return always(attribute, both, both);
}

/// What palettes are computed in, apart from any style: values by attribute, each absent, the null
/// marker or a value of any kind. Owns what it holds; one thread's.
struct PaletteValues {
    using Values = std::array<std::optional<ZelAttributeValue>, ZelStyleAttributeCount>;

    Values presets; ///< what was there before the first row
    Values written; ///< what rows have written, the null marker where a colour was missing

    /// What a row reads: what was written last, else the preset; `nullptr` for none and for null. A
    /// value of any kind counts, also one that the typed accessor doesn't answer: it is a client's.
    [[nodiscard]] const ZelAttributeValue* find(ZelStyleAttribute attribute) const noexcept;
};

/// Computes a palette, row after row: order is meaning, a row reads what earlier ones wrote.
/// Nothing but `values` changes, and nothing else is read but the platform's colours.
void computePalette(std::span<const PaletteRow> rows, PaletteValues& values, bool darkMode);

/// A style's effective values as presets, with nothing written.
[[nodiscard]] PaletteValues presetsOf(const ZelStyle& style);

/// Stores what rows have written as a style's own values, all at once.
void writePalette(ZelStyle& style, const PaletteValues& values);

} // namespace zel::inline v1
