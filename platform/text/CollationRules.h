// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zel {
inline namespace v1 {

/// How two letters differ for sorting: by their primary weights first, and by their accents only
/// where the primary weights of the whole texts are alike.
struct CollationWeight {
    std::uint32_t primary = 0;
    std::uint32_t accent = 0; ///< 0: none
};

/// A letter of a language's own: base letters that follow each other ("ch"), with the given
/// accents on the last of them.
struct CollationRule {
    std::u16string letters;
    std::u16string accents; ///< in ascending order
    CollationWeight weight;
};

/// The rules of a language ("sv"), those that hold for every language included.
std::vector<CollationRule> collationRulesFor(std::string_view language);

/// The primary weight of a case-folded, undecomposed character where no rule says otherwise:
/// symbols before digits before letters, Latin before Greek before Cyrillic before the others.
std::uint32_t primaryWeightOf(char32_t character) noexcept;

/// Whether a character is an accent on the letter before it.
constexpr bool isAccent(char32_t character) noexcept {
    return character >= 0x300 && character < 0x370;
}

/// Whether the language's capital I is a dotless one.
bool hasDotlessCapital(std::string_view language) noexcept;

} // namespace v1
} // namespace zel
