// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace zel::inline v1 {

/// The library's texts in one language. The text is static and UTF-8.
struct LocalizedStrings {
    std::string_view locale; ///< language, language_TERRITORY or language@modifier
    std::string_view light;
    std::string_view dark;
    std::string_view followSystemAppearance;

    /// The text for a key; the key itself where it is none of the library's.
    [[nodiscard]] std::string_view textFor(std::string_view key) const noexcept;
};

/// The texts of exactly that locale; nullptr where the library has none.
const LocalizedStrings* localizedStringsFor(std::string_view locale) noexcept;

} // namespace zel::inline v1
