// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace zel::inline v1 {

/// One step through UTF-8 text: a character, or a byte that begins none.
struct Utf8Step {
    char32_t character = 0; ///< the byte itself where it is not valid
    std::size_t length = 1; ///< in bytes, 1 to 4
    bool valid = true;
};

/// Reads the step at an offset within the text. Overlong forms, surrogates and values above
/// U+10FFFF are not valid. Pure; never throws.
Utf8Step readUtf8(std::string_view text, std::size_t offset) noexcept;

} // namespace zel::inline v1
