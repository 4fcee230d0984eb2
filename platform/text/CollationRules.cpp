// SPDX-License-Identifier: Apache-2.0
#include "platform/text/CollationRules.h"

#include "platform/text/LetterDecompositions.h"

#include <algorithm>

namespace zel {
inline namespace v1 {
namespace {

// Primary weights: a class in the top byte, then the place within the class.
constexpr std::uint32_t kSymbols = 0x01000000;
constexpr std::uint32_t kDigits = 0x02000000;
constexpr std::uint32_t kLatin = 0x03000000;
constexpr std::uint32_t kGreek = 0x04000000;
constexpr std::uint32_t kCyrillic = 0x05000000;
constexpr std::uint32_t kOthers = 0x06000000;
/// Letters of an alphabet that have no place in its order stand behind those that have.
constexpr std::uint32_t kUnplaced = 0x00800000;
/// Between two neighbours there is room for as many letters of a language's own.
constexpr std::uint32_t kSpacing = 0x100;
/// Above every combining mark.
constexpr std::uint32_t kRuleAccents = 0x400;

constexpr std::u16string_view kLatinOrder = u"abcdðeəɛfgɣhijklmnŋoɔpqrstuvwxyzʒþƿȝ";
constexpr std::u16string_view kCyrillicOrder =
    u"аәбвгғґдђеєжҗзѕиійјкқлљмнњңоөпрстћуўұүфхһцчџшщъыьѣэюяѵ";

/// `&x` goes to the place of x; `<y` gives y the next place behind, `<<y` the same place and an
/// accent, `=y` the same place and none.
struct Tailoring {
    std::string_view languages; ///< each with a space on either side
    std::u16string_view rules;
};

/// Letters that every language's readers know as their own, though they are written with marks.
constexpr std::u16string_view kCommonRules = u"&й=й&ў=ў&і<ї";

constexpr Tailoring kTailorings[] = {
    {" az ", u"&c<ç&g<ğ&h<x<ı&i=i\u0307=ı\u0307&k<q&o<ö&s<ş&u<ü"},
    {" be ", u"&е<ё"},
    {" bs hr sr ", u"&c<č<ć&d<dž<đ&l<lj&n<nj&s<š&z<ž"},
    {" cs ", u"&c<č&h<ch&r<ř&s<š&z<ž"},
    {" da nb nn no ", u"&y<<ü&z<æ<<ä<ø<<ö<<ő<å<<aa"},
    {" eo ", u"&c<ĉ&g<ĝ&h<ĥ&j<ĵ&s<ŝ&u<ŭ"},
    {" es eu gl ", u"&n<ñ"},
    {" et ", u"&s<š<z<ž&w<õ<ä<ö<ü"},
    {" fi sv ", u"&y<<ü<<ű&z<å<ä<<æ<ö<<ø<<ő<<œ"},
    {" hu ", u"&c<cs&d<dz<dzs&g<gy&l<ly&n<ny&o<ö<<ő&s<sz&t<ty&u<ü<<ű&z<zs"},
    {" is ", u"&a<á&e<é&i<í&o<ó&u<ú&y<ý&z<þ<æ<<ä<ö<<ø<å"},
    {" kk ", u"&ы<і"},
    {" lt ", u"&c<č&i<<y&s<š&z<ž"},
    {" lv ", u"&c<č&g<ģ&i<<y&k<ķ&l<ļ&n<ņ&r<ŗ&s<š&z<ž"},
    {" mk ", u"&д<ѓ&т<ќ"},
    {" pl ", u"&a<ą&c<ć&e<ę&l<ł&n<ń&o<ó&s<ś&z<ź<ż"},
    {" ro ", u"&a<ă<â&i<î&s<ș<<ş&t<ț<<ţ"},
    {" sk ", u"&a<ä&c<č&h<ch&o<ô&s<š&z<ž"},
    {" sl ", u"&c<č<ć&d<đ&s<š&z<ž"},
    {" tr ", u"&c<ç&g<ğ&h<ı&i=i\u0307=ı\u0307&o<ö&s<ş&u<ü"},
    {" vi ", u"&a<ă<â&d<đ&e<ê&o<ô<ơ&u<ư"},
};

std::u16string_view tailoringOf(std::string_view language) {
    const std::string word = ' ' + std::string(language) + ' ';
    for (const Tailoring& tailoring : kTailorings) {
        if (tailoring.languages.find(word) != std::string_view::npos) {
            return tailoring.rules;
        }
    }
    return {};
}

/// Splits a rule's text into base letters and accents.
void splitLetters(std::u16string_view text, CollationRule& rule) {
    for (const char16_t character : text) {
        const std::u16string_view parts = lettersAndAccentsOf(character);
        for (const char16_t part : parts.empty() ? std::u16string_view(&character, 1) : parts) {
            (isAccent(part) ? rule.accents : rule.letters) += part;
        }
    }
    std::sort(rule.accents.begin(), rule.accents.end());
}

void appendRules(std::u16string_view text, std::vector<CollationRule>& rules) {
    CollationWeight weight;
    while (!text.empty()) {
        const bool samePlace = text.starts_with(u"<<");
        const char16_t sign = text.front();
        text.remove_prefix(samePlace ? 2 : 1);
        const std::u16string_view letters = text.substr(0, text.find_first_of(u"&<="));
        text.remove_prefix(letters.size());
        if (sign == u'&') {
            weight = {primaryWeightOf(letters.front()), 0};
            continue;
        }
        if (samePlace) {
            weight.accent = std::max(weight.accent, kRuleAccents) + 1;
        } else if (sign == u'<') {
            weight = {weight.primary + 1, 0};
        }
        CollationRule& rule = rules.emplace_back();
        rule.weight = weight;
        splitLetters(letters, rule);
    }
}

bool isSymbol(char32_t c) noexcept {
    const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    return c < U'0' || within(U':', U'@') || within(U'[', U'`') || within(U'{', 0xBF) ||
           c == 0xD7 || c == 0xF7 || within(0x2000, 0x2BFF) || within(0x3000, 0x303F) ||
           within(0xFE00, 0xFE6F) || c == 0xFEFF || within(0x1F000, 0x1FAFF);
}

std::uint32_t placeIn(std::u16string_view order, char32_t character) noexcept {
    // Only asked for alphabets of sixteen-bit characters.
    const std::size_t at = order.find(static_cast<char16_t>(character));
    return at == std::u16string_view::npos ? kUnplaced | character
                                           : kSpacing * (1 + static_cast<std::uint32_t>(at));
}

} // namespace

std::uint32_t primaryWeightOf(char32_t character) noexcept {
    if (isSymbol(character)) {
        return kSymbols | character;
    }
    if (character <= U'9') {
        return kDigits | character;
    }
    if (character < 0x370) {
        return kLatin | placeIn(kLatinOrder, character);
    }
    if (character < 0x400) {
        return kGreek | character;
    }
    return character < 0x530 ? kCyrillic | placeIn(kCyrillicOrder, character) : kOthers | character;
}

std::vector<CollationRule> collationRulesFor(std::string_view language) {
    std::vector<CollationRule> rules;
    appendRules(kCommonRules, rules);
    appendRules(tailoringOf(language), rules);
    return rules;
}

bool hasDotlessCapital(std::string_view language) noexcept {
    return language == "tr" || language == "az";
}

} // namespace v1
} // namespace zel
