// SPDX-License-Identifier: Apache-2.0
// The library's texts and the order of names, in whatever locale. A line of an input is one of
//   LANGUAGE|LC_ALL|LC_MESSAGES|LC_COLLATE|LANG VALUE   sets a variable
//   text KEY TEXT      gives a host's string table a text
//   none KEY           has it answer nothing
//   throw KEY          has it raise
//   key KEY            asks for the text of a key
//   name NAME          sorts a name with the four before it, by the locale of the process
#include "platform/text/LocalizedStrings.h"
#include "tests/fuzz/Environment.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Script.h"

#include <ZelStyleKit/NSBundle.h>

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

namespace zelfuzz {
namespace {

struct Locale {
    Variable language{"LANGUAGE"};
    Variable all{"LC_ALL"};
    Variable messages{"LC_MESSAGES"};
    Variable collate{"LC_COLLATE"};
    Variable lang{"LANG"};

    void clear() {
        for (Variable* each : {&language, &all, &messages, &collate, &lang}) {
            each->unset();
        }
    }
    Variable* named(std::string_view name) {
        const std::map<std::string_view, Variable*> variables{{"LANGUAGE", &language},
                                                              {"LC_ALL", &all},
                                                              {"LC_MESSAGES", &messages},
                                                              {"LC_COLLATE", &collate},
                                                              {"LANG", &lang}};
        const auto found = variables.find(name);
        return found == variables.end() ? nullptr : found->second;
    }
};

Locale& locale() {
    static Locale& variables = *new Locale; // in the environment for as long as the process runs
    return variables;
}

bool isPortable(std::string_view name) {
    const std::string_view language = name.substr(0, name.find_first_of("@._"));
    return language.empty() || language == "C" || language == "POSIX";
}

/// What stands behind a mark, up to the first of some others; with the mark, empty without it.
std::string partOf(std::string_view name, char mark, std::string_view ends) {
    const std::size_t at = name.find(mark);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = name.substr(at + 1);
    return mark + std::string(rest.substr(0, rest.find_first_of(ends)));
}

/// The library's texts for one entry of a list of languages.
const zel::LocalizedStrings* textsFor(std::string_view entry) {
    const std::string_view withoutModifier = entry.substr(0, entry.find('@'));
    const std::string_view plain = withoutModifier.substr(0, withoutModifier.find('.'));
    const std::string modifier = partOf(entry, '@', {});
    const std::string language(plain.substr(0, plain.find('_')));
    const std::string inTerritory = language + partOf(plain, '_', {});
    const zel::LocalizedStrings* found = nullptr;
    for (const std::string& name :
         {inTerritory + modifier, inTerritory, language + modifier, language}) {
        found = found != nullptr ? found : zel::localizedStringsFor(name);
    }
    return found;
}

/// The text that the variables choose, by the rules of message catalogues. What is judged is the
/// choice: the texts are the library's own data.
std::string expectedText(const std::string& key) {
    std::string name;
    for (const Variable* each : {&locale().all, &locale().messages, &locale().lang}) {
        name = name.empty() ? each->value() : name;
    }
    if (isPortable(name)) {
        return key;
    }
    const std::string preferred = locale().language.value();
    std::string_view rest = preferred.empty() ? std::string_view(name) : preferred;
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
        if (entry.empty()) {
            continue;
        }
        if (const auto* const texts = textsFor(entry)) {
            return key == "Light"                      ? std::string(texts->light)
                   : key == "Dark"                     ? std::string(texts->dark)
                   : key == "Follow system appearance" ? std::string(texts->followSystemAppearance)
                                                       : key;
        }
        if (isPortable(entry)) {
            break;
        }
    }
    return key;
}

/// What a host's table does for a key: answers a text or nothing, or raises.
struct HostText {
    std::optional<std::string> text;
    bool raises = false;
};
using HostTexts = std::map<std::string, HostText, std::less<>>;

void checkKey(const std::string& key, const HostTexts& hostTexts) {
    std::string expected = key;
    if (hostTexts.empty()) {
        expected = expectedText(key);
    } else if (const auto found = hostTexts.find(key); found != hostTexts.end()) {
        expected = found->second.text.value_or(key);
    }
    require(zel::NSBundle::localizedStringForKey(key) == expected, "a key has its text", key);
    for (const char* const each : {"Light", "Dark", "Follow system appearance"}) {
        require(!hostTexts.empty() ||
                    zel::NSBundle::localizedStringForKey(each) == expectedText(each),
                "the library's texts are in the chosen language", each);
    }
}

void useTable(const HostTexts& hostTexts) {
    zel::NSBundle::setStringTable([&hostTexts](std::string_view key) -> std::optional<std::string> {
        const auto found = hostTexts.find(key);
        if (found == hostTexts.end()) {
            return std::nullopt;
        }
        if (found->second.raises) {
            throw std::runtime_error("a table that breaks its word");
        }
        return found->second.text;
    });
}

/// Whether names sort by a strict weak order: what is before and what is alike are both passed on.
void checkOrder(const std::deque<std::string>& names) {
    const std::size_t count = names.size();
    std::vector<std::vector<int>> order(count, std::vector<int>(count));
    for (std::size_t a = 0; a < count; ++a) {
        for (std::size_t b = 0; b < count; ++b) {
            const int compared = zel::localizedCaseInsensitiveCompare(names[a], names[b]);
            order[a][b] = compared < 0 ? -1 : compared > 0 ? 1 : 0;
        }
    }
    for (std::size_t a = 0; a < count; ++a) {
        require(order[a][a] == 0, "a name sorts with itself", names[a]);
        for (std::size_t b = 0; b < count; ++b) {
            require(order[a][b] == -order[b][a], "either way round is the same", names[a]);
            for (std::size_t c = 0; c < count; ++c) {
                require(order[a][b] > 0 || order[b][c] > 0 ||
                            order[a][c] == std::min(order[a][b], order[b][c]),
                        "an order is passed on", names[a]);
            }
        }
    }
}

void run(Script script) {
    constexpr std::size_t mostNames = 5;
    HostTexts hostTexts;
    std::deque<std::string> names;
    while (script.nextLine()) {
        const std::string_view word = script.word();
        if (Variable* const variable = locale().named(word)) {
            variable->set(script.textToLineEnd());
        } else if (word == "text" || word == "none" || word == "throw") {
            const std::string key = script.text();
            hostTexts[key] = {};
            if (word == "text") {
                hostTexts[key].text = script.textToLineEnd();
            }
            hostTexts[key].raises = word == "throw";
            useTable(hostTexts);
        } else if (word == "key") {
            checkKey(script.textToLineEnd(), hostTexts);
        } else if (word == "name") {
            names.push_back(script.textToLineEnd().substr(0, 512));
            if (names.size() > mostNames) {
                names.pop_front();
            }
        }
    }
    checkOrder(names);
}

} // namespace
} // namespace zelfuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelfuzz::locale().clear();
    zelfuzz::run(zelfuzz::Script({reinterpret_cast<const char*>(data), size}));
    zel::NSBundle::setStringTable(nullptr);
    return 0;
}
