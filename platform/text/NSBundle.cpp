// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>

#include "platform/objects/HostFunction.h"
#include "platform/text/LocalizedStrings.h"

#include <cstdlib>
#include <memory>
#include <utility>

namespace zel::inline v1 {
namespace {

/// Never destroyed: objects that live as long as the process ask while they end.
HostFunction<NSBundle::StringTable>& hostStrings() {
    static auto& strings = *std::make_unique<HostFunction<NSBundle::StringTable>>().release();
    return strings;
}

/// What comes before a mark, and what comes after it; all and nothing where there is none.
std::pair<std::string_view, std::string_view> cutAt(std::string_view text, char mark) {
    const std::size_t at = text.find(mark);
    return {text.substr(0, at),
            at == std::string_view::npos ? std::string_view{} : text.substr(at + 1)};
}

/// The user's locale for messages: the first of the variables that is set and not empty.
std::string localeName() {
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && value[0] != '\0') {
            return value;
        }
    }
    return {};
}

/// Whether a locale is no language's: "C" or "POSIX" with any codeset, or nothing.
bool isPortable(std::string_view locale) {
    const std::string_view language = locale.substr(0, locale.find_first_of("_.@"));
    return language.empty() || language == "C" || language == "POSIX";
}

/// The library's texts for a locale, `language_TERRITORY.codeset@modifier`, or for the nearest less
/// specific one. The codeset doesn't matter: all text here is UTF-8.
const LocalizedStrings* nearestStrings(std::string_view locale) {
    const auto [name, modifier] = cutAt(locale, '@');
    const std::string inTerritory(cutAt(name, '.').first);
    const std::string language(cutAt(inTerritory, '_').first);
    const std::string modified = '@' + std::string(modifier);
    for (const std::string& each :
         {inTerritory + modified, inTerritory, language + modified, language}) {
        if (const LocalizedStrings* const strings = localizedStringsFor(each)) {
            return strings;
        }
    }
    return nullptr;
}

/// The texts that the user's environment chooses; nullptr for the keys themselves.
const LocalizedStrings* chosenStrings() {
    const std::string locale = localeName();
    if (isPortable(locale)) {
        return nullptr;
    }
    const char* const variable = std::getenv("LANGUAGE");
    const std::string list = variable != nullptr && variable[0] != '\0' ? variable : locale;
    for (std::string_view rest = list; !rest.empty();) {
        const auto [entry, others] = cutAt(rest, ':');
        rest = others;
        if (entry.empty()) {
            continue;
        }
        const LocalizedStrings* const strings = nearestStrings(entry);
        if (strings != nullptr || isPortable(entry)) {
            return strings;
        }
    }
    return nullptr;
}

} // namespace

std::string NSBundle::localizedStringForKey(std::string_view key) {
    const auto table = hostStrings().get();
    if (!table) {
        const LocalizedStrings* const strings = chosenStrings();
        return std::string(strings == nullptr ? key : strings->textFor(key));
    }
    try {
        if (auto text = (*table)(key)) {
            return *std::move(text);
        }
    } catch (...) { // a host's table that breaks its word is one without this text
        return std::string(key);
    }
    return std::string(key);
}

void NSBundle::setStringTable(StringTable table) {
    hostStrings().set(std::move(table));
}

} // namespace zel::inline v1
