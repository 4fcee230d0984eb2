// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The parts of a locale's name, `language_TERRITORY.codeset@modifier`; empty where left out. The
/// codeset is dropped: all text here is UTF-8. Refers to the name it was made from.
struct LocaleName {
    std::string_view language;
    std::string_view territory;
    std::string_view modifier;

    explicit LocaleName(std::string_view name) noexcept;

    /// Whether this is no language's locale: "C" or "POSIX" with any codeset, or nothing.
    [[nodiscard]] bool isPortable() const noexcept;
};

/// The name of the user's locale for a category such as "LC_MESSAGES": the first of LC_ALL, the
/// category and LANG that is set and not empty. Empty where none is. Reads the environment each
/// time, so not while another thread changes it.
std::string localeNameFor(const char* category);

} // namespace v1
} // namespace zel
