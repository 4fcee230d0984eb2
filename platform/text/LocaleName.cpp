// SPDX-License-Identifier: Apache-2.0
#include "platform/text/LocaleName.h"

#include <cstdlib>

namespace zel {
inline namespace v1 {
namespace {

/// Cuts a name at a mark: what follows the mark is returned, the name keeps what stands before it.
std::string_view cutAt(std::string_view& name, char mark) noexcept {
    const std::size_t at = name.find(mark);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = name.substr(at + 1);
    name = name.substr(0, at);
    return rest;
}

} // namespace

LocaleName::LocaleName(std::string_view name) noexcept : language(name) {
    modifier = cutAt(language, '@');
    cutAt(language, '.');
    territory = cutAt(language, '_');
}

bool LocaleName::isPortable() const noexcept {
    return language.empty() || language == "C" || language == "POSIX";
}

std::string localeNameFor(const char* category) {
    for (const char* const variable : {"LC_ALL", category, "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && value[0] != '\0') {
            return value;
        }
    }
    return {};
}

} // namespace v1
} // namespace zel
