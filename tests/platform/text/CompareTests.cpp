// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace zel_tests {
namespace {

using zel::localizedCaseInsensitiveCompare;

void setLocale(const char* name) {
    for (const char* const variable : {"LC_ALL", "LC_COLLATE", "LC_MESSAGES", "LANGUAGE"}) {
        ::unsetenv(variable);
    }
    ::setenv("LANG", name, 1);
}

/// Sorts the names, from several starting orders, and expects them as written.
void expectOrder(const char* locale, const std::vector<std::string>& names) {
    setLocale(locale);
    for (std::size_t start = 0; start < names.size(); ++start) {
        std::vector<std::string> sorted = names;
        std::rotate(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(start),
                    sorted.end());
        std::reverse(sorted.begin(), sorted.end());
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
            return localizedCaseInsensitiveCompare(a, b) < 0;
        });
        EXPECT_EQ(sorted, names) << locale;
    }
    for (std::size_t i = 1; i < names.size(); ++i) {
        EXPECT_LT(localizedCaseInsensitiveCompare(names[i - 1], names[i]), 0)
            << locale << ": " << names[i - 1] << ", " << names[i];
    }
}

void expectSame(std::string_view a, std::string_view b) {
    EXPECT_EQ(localizedCaseInsensitiveCompare(a, b), 0) << a << ", " << b;
    EXPECT_EQ(localizedCaseInsensitiveCompare(b, a), 0) << b << ", " << a;
}

TEST(CaseInsensitiveCompare, TakesUpperAndLowerCaseOfEveryAlphabetForTheSame) {
    for (const char* const locale : {"C", "en_US.UTF-8", "sv_SE.UTF-8", ""}) {
        setLocale(locale);
        expectSame("", "");
        expectSame("Always Dark", "aLWAYS dARK");
        expectSame("ÀÉÎÕÜÞÆØÅ", "àéîõüþæøå");
        expectSame("ĀĆĐŁŇŒŠŽŸ", "āćđłňœšžÿ");
        expectSame("ƏƐǍǰ", "əɛǎǰ");
        expectSame("ẠẬỚỰ", "ạậớự");
        expectSame("STRAẞE", "straße");
        expectSame("ΆΈΩΣΑΣ", "άέωσας");
        expectSame("ЁЖИКЇҐЎЂ", "ёжикїґўђ");
        expectSame("ԱԲԵՖ", "աբեֆ");
        expectSame("ᲐᲑ", "აბ");
        expectSame("𐐀𐐁", "𐐨𐐩");
    }
}

TEST(CaseInsensitiveCompare, SetsALowerCaseLetterBeforeALaterCapital) {
    for (const char* const locale : {"C", "POSIX", "C.UTF-8", "en_US.UTF-8", "de_DE"}) {
        expectOrder(locale, {"", "9", "amber", "B", "blue", "Zinc"});
    }
}

TEST(CaseInsensitiveCompare, ComparesCharactersByNumberInThePortableLocale) {
    expectOrder("C", {"_", "a", "z", "é", "ž", "α", "я"});
    expectOrder("", {"z", "é"});
    expectOrder("C.UTF-8", {"z", "é"});
}

TEST(CaseInsensitiveCompare, SetsAccentsBehindLettersOnlyWhereTheLettersAreAlike) {
    expectOrder("en_US.UTF-8", {"cote", "coté", "côte", "côté", "coter", "zebra"});
    expectOrder("fr_FR.UTF-8", {"ea", "eá", "éa", "eb", "Éb", "ef"});
    expectOrder("de_DE.UTF-8",
                {"Apfel", "Äpfel", "arg", "Ofen", "Öfen", "ohne", "Strasse", "Straße", "Strasser"});
    expectOrder("en_GB.UTF-8", {"ad", "ae", "æ", "af", "oe", "œ", "of", "oz", "øz"});
}

TEST(CaseInsensitiveCompare, SetsSymbolsBeforeDigitsBeforeLettersAlphabetByAlphabet) {
    expectOrder("en_US.UTF-8", {" ", "-", "_", "×", "…", "🎨", "0", "9", "a", "ž", "Α", "ω", "а",
                                "я", "ա", "א", "あ", "漢"});
}

TEST(CaseInsensitiveCompare, KnowsTheNordicLettersBehindZ) {
    expectOrder("sv_SE.UTF-8", {"a", "ae", "o", "y", "ü", "z", "å", "ä", "æ", "ö", "ø"});
    expectOrder("fi_FI.UTF-8", {"a", "o", "z", "Å", "ä", "Ö"});
    expectOrder("da_DK.UTF-8", {"ab", "y", "ü", "z", "æ", "ä", "ø", "ö", "å", "aa"});
    expectOrder("nb_NO.UTF-8", {"a", "z", "Æ", "ø", "Å"});
    expectOrder("nn_NO.UTF-8", {"a", "z", "æ", "ø", "å"});
    expectOrder("is_IS.UTF-8", {"ad", "ám", "d", "ð", "z", "þ", "æ", "ö", "å"});
    expectOrder("en_US.UTF-8", {"a", "ä", "å", "ab", "o", "ö", "z"});
}

TEST(CaseInsensitiveCompare, KnowsTheLettersOfOtherLanguages) {
    expectOrder("es_ES.UTF-8", {"na", "nz", "ñ", "Ña", "o"});
    expectOrder("pl_PL.UTF-8", {"az", "ą", "cz", "ć", "lz", "ł", "oz", "ó", "zz", "ź", "ż"});
    expectOrder("cs_CZ.UTF-8",
                {"cz", "č", "hz", "ch", "chz", "i", "rz", "ř", "sz", "š", "zz", "ž"});
    expectOrder("hr_HR.UTF-8", {"cz", "č", "ć", "dz", "dž", "đ", "lz", "lj", "nz", "nj", "š"});
    expectOrder("hu_HU.UTF-8", {"cz", "cs", "d", "dz", "dzs", "oz", "ö", "ő", "őz", "uz", "ü"});
    expectOrder("ro_RO.UTF-8", {"az", "ă", "â", "iz", "î", "sz", "ș", "tz", "ț"});
    expectOrder("et_EE.UTF-8", {"sz", "š", "z", "ž", "t", "w", "õ", "ä", "ö", "ü", "x"});
    expectOrder("lt_LT.UTF-8", {"cz", "č", "i", "y", "iz", "k"});
    expectOrder("vi_VN.UTF-8", {"az", "ă", "ặ", "â", "ậ", "đ", "e", "ê", "ộ", "ơ", "ớ", "p"});
    expectOrder("ru_RU.UTF-8", {"ед", "ёд", "её", "ж", "и", "й", "к", "я"});
    expectOrder("uk_UA.UTF-8", {"г", "ґ", "д", "е", "є", "ж", "и", "і", "ї", "й", "щ", "ь", "ю"});
    expectOrder("sr_RS.UTF-8", {"д", "ђ", "ј", "к", "љ", "м", "њ", "т", "ћ", "у", "ч", "џ"});
    expectOrder("el_GR.UTF-8", {"Άλφα", "Βήτα", "ως", "ώς", "ωσα"});
}

TEST(CaseInsensitiveCompare, KnowsBothLettersIOfTurkish) {
    expectOrder("tr_TR.UTF-8", {"cz", "ç", "gz", "ğ", "h", "ı", "Iz", "i", "İz", "oz", "ö", "ş"});
    setLocale("tr_TR.UTF-8");
    expectSame("I", "ı");
    expectSame("İ", "i");
    EXPECT_LT(localizedCaseInsensitiveCompare("I", "i"), 0);
    setLocale("en_US.UTF-8");
    expectSame("I", "i");
    EXPECT_LT(localizedCaseInsensitiveCompare("i", "ı"), 0);
    EXPECT_LT(localizedCaseInsensitiveCompare("İ", "ia"), 0);
}

TEST(CaseInsensitiveCompare, TakesALetterAndItsMarksForTheLetterWithMarks) {
    for (const char* const locale : {"en_US.UTF-8", "sv_SE.UTF-8", "vi_VN.UTF-8"}) {
        setLocale(locale);
        expectSame("é", "e\u0301");
        expectSame("Å", "a\u030A");
        expectSame("ậ", "a\u0323\u0302");
        expectSame("ậ", "a\u0302\u0323");
        expectSame("й", "и\u0306");
        expectSame("ᾳ", "α\u0345");
    }
    expectOrder("sv_SE.UTF-8", {"z", "a\u030A", "a\u0308"});
    setLocale("tr_TR.UTF-8");
    expectSame("I\u0307", "i");
}

TEST(CaseInsensitiveCompare, FollowsTheFirstVariableThatIsNotEmpty) {
    setLocale("en_US.UTF-8");
    EXPECT_LT(localizedCaseInsensitiveCompare("ö", "z"), 0);
    ::setenv("LC_COLLATE", "sv_SE.UTF-8", 1);
    EXPECT_GT(localizedCaseInsensitiveCompare("ö", "z"), 0);
    ::setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_LT(localizedCaseInsensitiveCompare("ö", "z"), 0);
    ::setenv("LC_ALL", "", 1);
    EXPECT_GT(localizedCaseInsensitiveCompare("ö", "z"), 0);
    ::unsetenv("LC_COLLATE");
    ::setenv("LC_MESSAGES", "sv_SE.UTF-8", 1);
    EXPECT_LT(localizedCaseInsensitiveCompare("ö", "z"), 0);
}

TEST(CaseInsensitiveCompare, TellsBytesThatAreNoTextApartBehindAllThatIs) {
    for (const char* const locale : {"C", "en_US.UTF-8"}) {
        expectOrder(locale, {"a", "a漢", "a\x80", "a\xC3", "a\xFF", "b"});
    }
    expectOrder("en_US.UTF-8", {std::string("a"), std::string("a\0", 2), std::string("a\0b", 3)});
}

int signOf(int order) {
    return (order > 0) - (order < 0);
}

TEST(CaseInsensitiveCompare, IsAStrictWeakOrderWhateverIsCompared) {
    const std::vector<std::string> texts = {
        "",           "a",
        "A",          "á",
        "a\u0301",    "\u0301",
        "\u0301a",    "ab",
        "aB",         "aa",
        "å",          "AA",
        "æ",          "ae",
        "AE",         "ß",
        "ss",         "SS",
        "z",          "ž",
        "dž",         "ǆ",
        "d\u017E",    "ch",
        "c",          "cz",
        "i",          "I",
        "ı",          "İ",
        "i\u0307",    "o\u0323\u0302",
        "ộ",          "\xC3",
        "\xC3\xA1",   "\xFF",
        "\xFF\u0301", "\xED\xA0\x80",
        "9",          " ",
        "й",          "и",
        "и\u0306",    "и\u0301\u0306",
        "Σ",          "ς",
        "漢",         "🎨",
    };
    for (const char* const locale : {"C", "en_US", "da_DK", "sv_SE", "tr_TR", "hr_HR", "vi_VN"}) {
        setLocale(locale);
        const std::size_t count = texts.size();
        std::vector<int> order(count * count);
        for (std::size_t a = 0; a < count; ++a) {
            for (std::size_t b = 0; b < count; ++b) {
                order[a * count + b] = signOf(localizedCaseInsensitiveCompare(texts[a], texts[b]));
            }
        }
        for (std::size_t a = 0; a < count; ++a) {
            ASSERT_EQ(order[a * count + a], 0);
            for (std::size_t b = 0; b < count; ++b) {
                ASSERT_EQ(order[a * count + b], -order[b * count + a]) << texts[a] << texts[b];
                for (std::size_t c = 0; c < count; ++c) {
                    if (order[a * count + b] <= 0 && order[b * count + c] <= 0) {
                        ASSERT_LE(order[a * count + c], 0) << texts[a] << texts[b] << texts[c];
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace zel_tests
