// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/HostFunction.h"
#include "platform/text/Utf8.h"

#include <ZelStyleKit/NSBundle.h>

#include <locale>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace zel::inline v1 {
namespace {

/// Never destroyed: objects that live as long as the process compare while they end.
HostFunction<LocalizedComparison>& hostComparison() {
    static auto& comparison = *std::make_unique<HostFunction<LocalizedComparison>>().release();
    return comparison;
}

std::locale makeUserLocale() {
    for (const char* const name : {"", "C.UTF-8"}) {
        try {
            return std::locale(name);
        } catch (const std::runtime_error&) {
            continue; // not installed
        }
    }
    return std::locale::classic();
}

/// Made once, since making one takes longer than sorting a list. Never destroyed, as above.
const std::locale& userLocale() {
    static const auto& locale = *std::make_unique<const std::locale>(makeUserLocale()).release();
    return locale;
}

/// In wide characters, which every locale's rules know, whatever its encoding.
std::wstring folded(std::string_view text, const std::locale& locale) {
    std::wstring characters;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = readUtf8(text, at);
        at += step.length;
        characters += step.valid ? static_cast<wchar_t>(step.character) : L'\uFFFD';
    }
    std::use_facet<std::ctype<wchar_t>>(locale).tolower(characters.data(),
                                                        characters.data() + characters.size());
    return characters;
}

} // namespace

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    if (const auto comparison = hostComparison().get()) {
        try {
            return (*comparison)(a, b);
        } catch (...) { // a host's comparison that breaks its word takes the two for alike
            return 0;
        }
    }
    const std::locale& locale = userLocale();
    const std::wstring first = folded(a, locale);
    const std::wstring second = folded(b, locale);
    return std::use_facet<std::collate<wchar_t>>(locale).compare(
        first.data(), first.data() + first.size(), second.data(), second.data() + second.size());
}

void setLocalizedComparison(LocalizedComparison comparison) {
    hostComparison().set(std::move(comparison));
}

} // namespace zel::inline v1
