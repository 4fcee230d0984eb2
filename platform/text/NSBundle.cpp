// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>

#include "platform/text/LocaleName.h"
#include "platform/text/LocalizedStrings.h"

#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace zel {
inline namespace v1 {
namespace {

struct HostStrings {
    std::mutex mutex; ///< never held while the table is called or destroyed
    std::shared_ptr<const NSBundle::StringTable> table; ///< guarded by mutex
};

/// Never destroyed: objects that live as long as the process ask while they end.
HostStrings& hostStrings() {
    static HostStrings& strings = *std::make_unique<HostStrings>().release();
    return strings;
}

/// The library's texts for a locale, or for the nearest less specific one.
const LocalizedStrings* nearestStrings(const LocaleName& locale) {
    const std::string language(locale.language);
    const std::string modifier = '@' + std::string(locale.modifier);
    const std::string inTerritory = (language + '_').append(locale.territory);
    for (const std::string& name :
         {inTerritory + modifier, inTerritory, language + modifier, language}) {
        if (const LocalizedStrings* const strings = localizedStringsFor(name)) {
            return strings;
        }
    }
    return nullptr;
}

/// The texts that the user's environment chooses; nullptr for the keys themselves.
const LocalizedStrings* chosenStrings() {
    const std::string locale = localeNameFor("LC_MESSAGES");
    if (LocaleName(locale).isPortable()) {
        return nullptr;
    }
    const char* const variable = std::getenv("LANGUAGE");
    const std::string list = variable != nullptr && variable[0] != '\0' ? variable : locale;
    std::string_view rest = list;
    while (!rest.empty()) {
        const std::size_t colon = rest.find(':');
        const std::string_view entry = rest.substr(0, colon);
        rest = colon == std::string_view::npos ? std::string_view{} : rest.substr(colon + 1);
        if (entry.empty()) {
            continue;
        }
        const LocaleName name(entry);
        const LocalizedStrings* const strings = nearestStrings(name);
        if (strings != nullptr || name.isPortable()) {
            return strings;
        }
    }
    return nullptr;
}

} // namespace

std::string NSBundle::localizedStringForKey(std::string_view key) {
    std::shared_ptr<const StringTable> table;
    {
        HostStrings& strings = hostStrings();
        const std::lock_guard guard(strings.mutex);
        table = strings.table;
    }
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
    std::shared_ptr<const StringTable> shared;
    if (table) {
        shared = std::make_shared<const StringTable>(std::move(table));
    }
    HostStrings& strings = hostStrings();
    const std::lock_guard guard(strings.mutex);
    strings.table.swap(shared);
    // The guard ends before `shared`, declared earlier: the former table goes with no lock held.
}

} // namespace v1
} // namespace zel
