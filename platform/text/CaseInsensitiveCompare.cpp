// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>

#include "platform/text/CaseFolding.h"
#include "platform/text/CollationRules.h"
#include "platform/text/LetterDecompositions.h"
#include "platform/text/LocaleName.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <string>
#include <vector>

// The rules are the library's own, so that a list looks the same on every machine, whichever
// locales are installed on it. Texts are turned into keys, and the keys are compared item by item:
// whatever a text holds, the order is then a strict weak one.

namespace zel {
inline namespace v1 {
namespace {

/// What a text sorts by. `accents` has a 0 for each letter, followed by the letter's accents, so
/// that an accent counts at its letter's place.
struct SortKey {
    std::u32string primary;
    std::u32string accents;
};

/// Bytes that are no text stand behind all characters, each as itself.
constexpr char32_t kBrokenBytes = 0x110000;

/// The text's characters, case folded. With a dotless capital, "I" is the capital of "ı".
std::u32string foldedCharacters(std::string_view text, bool dotlessCapital) {
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = readUtf8(text, at);
        at += step.length;
        if (!step.valid) {
            characters += kBrokenBytes + step.character;
        } else if (dotlessCapital && step.character == U'I') {
            characters += U'ı';
        } else if (isAccent(step.character)) {
            characters += step.character; // not folded: one of them would become a letter
        } else {
            characters += foldCase(step.character);
        }
    }
    return characters;
}

/// The characters taken apart into letters and accents, each letter's accents in ascending order.
std::u32string decomposed(std::u32string_view characters) {
    std::u32string result;
    for (const char32_t character : characters) {
        const std::u16string_view parts = lettersAndAccentsOf(character);
        if (parts.empty()) {
            result += character;
        }
        result.append(parts.begin(), parts.end());
    }
    for (auto begin = result.begin(); begin != result.end();) {
        begin = std::find_if(begin, result.end(), isAccent);
        const auto end = std::find_if_not(begin, result.end(), isAccent);
        std::sort(begin, end);
        begin = end;
    }
    return result;
}

/// Turns decomposed text into a sort key by a language's rules, from left to right.
class KeyMaker {
public:
    KeyMaker(std::u32string_view text, const std::vector<CollationRule>& rules)
        : text_(text), rules_(rules) {}

    SortKey make() {
        while (!text_.empty()) {
            const CollationRule* const rule = longestMatch();
            const std::size_t letters = rule == nullptr ? 1 : rule->letters.size();
            if (rule != nullptr) {
                append(rule->weight);
            } else if (!isAccent(text_.front())) {
                append({primaryWeightOf(text_.front()), 0});
            } else {
                key_.accents += text_.front(); // on no letter at all
            }
            text_.remove_prefix(letters);
            appendAccents(rule == nullptr ? std::u16string_view{} : rule->accents);
        }
        return std::move(key_);
    }

private:
    void append(const CollationWeight& weight) {
        key_.primary += char32_t{weight.primary};
        key_.accents += U'\0';
        if (weight.accent != 0) {
            key_.accents += char32_t{weight.accent};
        }
    }

    /// Appends the accents that stand here, but for those that a rule has dealt with.
    void appendAccents(std::u16string_view dealtWith) {
        while (!text_.empty() && isAccent(text_.front())) {
            if (!dealtWith.empty() && dealtWith.front() == text_.front()) {
                dealtWith.remove_prefix(1);
            } else {
                key_.accents += text_.front();
            }
            text_.remove_prefix(1);
        }
    }

    [[nodiscard]] bool matches(const CollationRule& rule) const {
        const std::u32string_view letters = text_.substr(0, rule.letters.size());
        if (!std::equal(letters.begin(), letters.end(), rule.letters.begin(), rule.letters.end())) {
            return false;
        }
        const std::u32string_view rest = text_.substr(letters.size());
        return std::includes(rest.begin(), std::find_if_not(rest.begin(), rest.end(), isAccent),
                             rule.accents.begin(), rule.accents.end());
    }

    [[nodiscard]] const CollationRule* longestMatch() const {
        const CollationRule* longest = nullptr;
        const auto length = [](const CollationRule& rule) {
            return std::pair(rule.letters.size(), rule.accents.size());
        };
        for (const CollationRule& rule : rules_) {
            if (matches(rule) && (longest == nullptr || length(*longest) < length(rule))) {
                longest = &rule;
            }
        }
        return longest;
    }

    std::u32string_view text_; ///< what is left
    const std::vector<CollationRule>& rules_;
    SortKey key_;
};

SortKey sortKeyOf(std::string_view text, const LocaleName& locale,
                  const std::vector<CollationRule>& rules) {
    if (locale.isPortable()) {
        return {foldedCharacters(text, false), {}};
    }
    const std::u32string characters =
        decomposed(foldedCharacters(text, hasDotlessCapital(locale.language)));
    return KeyMaker(characters, rules).make();
}

} // namespace

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    const std::string name = localeNameFor("LC_COLLATE");
    const LocaleName locale(name);
    const std::vector<CollationRule> rules = collationRulesFor(locale.language);
    const SortKey first = sortKeyOf(a, locale, rules);
    const SortKey second = sortKeyOf(b, locale, rules);
    const int order = first.primary.compare(second.primary);
    return order != 0 ? order : first.accents.compare(second.accents);
}

} // namespace v1
} // namespace zel
