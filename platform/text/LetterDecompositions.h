// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace zel {
inline namespace v1 {

/// What a case-folded letter is made of for sorting: one or more letters, then their accents
/// (combining marks). "é" is "e" and an acute, "æ" is "a", "e" and a tie. Empty for a letter that
/// is of one piece. Covers Latin, Greek, Cyrillic and Armenian. Pure; the text is static.
std::u16string_view lettersAndAccentsOf(char32_t letter) noexcept;

} // namespace v1
} // namespace zel
