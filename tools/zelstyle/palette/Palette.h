// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zel::tool {

/// The palette that fills an attribute.
enum class PaletteGroup { Base, Main };

/// A predefined attribute of a scheme's new root style: a number, or a colour in sRGB; neither
/// where the style holds nothing or what has no such form.
struct PaletteEntry {
    std::string_view key;
    PaletteGroup group = PaletteGroup::Base;
    std::variant<std::monostate, std::uint64_t, ZelRGBA> value;

    [[nodiscard]] const ZelRGBA* color() const { return std::get_if<ZelRGBA>(&value); }
    [[nodiscard]] const std::uint64_t* number() const { return std::get_if<std::uint64_t>(&value); }
    /// "#RRGGBB" or "#RRGGBBAA", a number in digits, "-" for nothing.
    [[nodiscard]] std::string text() const;
};

/// What a new root style of a scheme starts with: every predefined attribute, in the order of the
/// library's list.
struct Palette {
    std::string scheme;
    std::vector<PaletteEntry> entries;

    /// The colour under a key; transparent black where there is none.
    [[nodiscard]] ZelRGBA colorFor(std::string_view key) const;
};

/// The groups with the words for their headings.
struct PaletteHeading {
    PaletteGroup group;
    std::string_view name; ///< one word, lower case
    std::string_view title;
};
inline constexpr PaletteHeading paletteHeadings[] = {
    {PaletteGroup::Base, "base", "Base palette"},
    {PaletteGroup::Main, "main", "Semantic colours"},
};

[[nodiscard]] Palette paletteOf(std::string_view scheme);

} // namespace zel::tool
