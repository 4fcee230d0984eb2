// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSBundle.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <locale>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zel_tests {
namespace {

using zel::localizedCaseInsensitiveCompare;
using zel::setLocalizedComparison;

using Names = std::vector<std::string>;

bool isInstalled(const char* locale) {
    try {
        return !std::locale(locale).name().empty();
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// A process's locale is the one of its first comparison, so that each of these wants a process of
/// its own; in a process that compares by another locale, they are skipped. So they are where the
/// locale, or the one that the fallback needs, isn't installed.
class CompareTests : public testing::Test {
protected:
    explicit CompareTests(std::string locale) : locale_(std::move(locale)), needed_(locale_) {}
    CompareTests(std::string locale, std::string needed)
        : locale_(std::move(locale)), needed_(std::move(needed)) {}

    void SetUp() override {
        static const auto used = std::pair(locale_, needed_);
        if (used != std::pair(locale_, needed_)) {
            GTEST_SKIP() << "this process compares by " << used.first;
        }
        if (!isInstalled(needed_.c_str())) {
            GTEST_SKIP() << needed_ << " isn't installed";
        }
        for (const char* const variable : {"LC_ALL", "LC_COLLATE", "LC_CTYPE", "LANGUAGE"}) {
            ::unsetenv(variable);
        }
        ::setenv("LANG", locale_.c_str(), 1);
    }

private:
    const std::string locale_;
    const std::string needed_;
};

struct CompareInTheClassicLocale : CompareTests {
    CompareInTheClassicLocale() : CompareTests("C") {}
};
struct CompareInCUtf8 : CompareTests {
    CompareInCUtf8() : CompareTests("C.UTF-8") {}
};
struct CompareInAnUninstalledLocale : CompareTests {
    CompareInAnUninstalledLocale() : CompareTests("xx_YY.UTF-8", "C.UTF-8") {}
};
struct CompareInGerman : CompareTests {
    CompareInGerman() : CompareTests("de_DE.UTF-8") {}
};
struct CompareInLatin1German : CompareTests {
    CompareInLatin1German() : CompareTests("de_DE.ISO-8859-1") {}
};
struct CompareInSwedish : CompareTests {
    CompareInSwedish() : CompareTests("sv_SE.UTF-8") {}
};
struct CompareInTurkish : CompareTests {
    CompareInTurkish() : CompareTests("tr_TR.UTF-8") {}
};
struct CompareInSwedishWithTurkishLetters : CompareTests {
    CompareInSwedishWithTurkishLetters() : CompareTests("tr_TR.UTF-8", "sv_SE.UTF-8") {}
};

/// Sorts the names, from several starting orders, and expects them as written.
void expectOrder(const Names& names) {
    for (std::size_t start = 0; start < names.size(); ++start) {
        Names sorted = names;
        std::rotate(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(start),
                    sorted.end());
        std::reverse(sorted.begin(), sorted.end());
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
            return localizedCaseInsensitiveCompare(a, b) < 0;
        });
        EXPECT_EQ(sorted, names);
    }
    for (std::size_t i = 1; i < names.size(); ++i) {
        EXPECT_LT(localizedCaseInsensitiveCompare(names[i - 1], names[i]), 0)
            << names[i - 1] << ", " << names[i];
    }
}

void expectSame(std::string_view a, std::string_view b) {
    EXPECT_EQ(localizedCaseInsensitiveCompare(a, b), 0) << a << ", " << b;
    EXPECT_EQ(localizedCaseInsensitiveCompare(b, a), 0) << b << ", " << a;
}

/// What holds where code points are the order and every alphabet is folded.
void expectCodePointOrder() {
    expectOrder({"", "9", "amber", "B", "blue", "Zinc", "é", "Ž", "α", "Я", "漢", "🎨"});
    expectSame("Always Dark", "aLWAYS dARK");
    expectSame("ÀÉÎÕÜÞÆØÅ", "àéîõüþæøå");
    expectSame("ΆΈΩ", "άέω");
    expectSame("ЁЖИКЇҐЎЂ", "ёжикїґўђ");
}

TEST_F(CompareInCUtf8, FoldsEveryAlphabetAndSetsItByCodePoints) {
    expectCodePointOrder();
}

TEST_F(CompareInAnUninstalledLocale, IsThatOfCUtf8) {
    expectCodePointOrder();
}

TEST_F(CompareInTheClassicLocale, FoldsAsciiAlone) {
    expectOrder({"", "9", "_", "amber", "B", "blue", "Zinc", "É", "é", "漢"});
    expectSame("Always Dark", "aLWAYS dARK");
}

TEST_F(CompareInGerman, SetsUmlautsBesideTheirLetters) {
    expectOrder({"Apfel", "Äpfel", "arg", "Ofen", "öfen", "ohne", "Über", "Zebra"});
    expectSame("ÄÖÜ", "äöü");
}

TEST_F(CompareInSwedish, SetsUmlautsBehindZ) {
    expectOrder({"a", "O", "z", "Å", "ä", "Ö"});
    expectSame("ÅÄÖ", "åäö");
}

TEST_F(CompareInTurkish, KnowsBothLettersI) {
    expectSame("I", "ı");
    expectSame("İ", "i");
    expectOrder({"h", "I", "i", "j"});
}

TEST_F(CompareInSwedishWithTurkishLetters, TakesTheOrderOfOneAndTheLettersOfTheOther) {
    if (!isInstalled("tr_TR.UTF-8")) {
        GTEST_SKIP() << "tr_TR.UTF-8 isn't installed";
    }
    ::setenv("LC_COLLATE", "sv_SE.UTF-8", 1);
    expectOrder({"z", "Å", "ä", "ö"});
    expectSame("I", "ı");
}

TEST_F(CompareInLatin1German, ReadsUtf8AllTheSame) {
    expectOrder({"Ofen", "öfen", "ohne"});
    expectSame("Ö", "ö");
}

TEST_F(CompareInCUtf8, KeepsToTheLocaleOfTheFirstComparison) {
    expectSame("É", "é");
    ::setenv("LC_ALL", "C", 1);
    expectSame("É", "é");
}

TEST_F(CompareInCUtf8, TakesABrokenByteForAReplacementCharacter) {
    for (const char* const broken : {"\x80", "\xFF", "\xC3", "\xF8"}) {
        expectSame(broken, "\uFFFD");
        expectOrder({"a", "a漢", std::string("a") + broken, "a🎨", "b"});
    }
    expectSame("\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"); // a surrogate
    expectSame("\xC0\xAF", "\uFFFD\uFFFD");           // an overlong slash
    expectSame(std::string(100'000, '\xFF'), std::string(100'000, '\xFE'));
}

TEST_F(CompareInCUtf8, ComparesWhatIsBehindAZeroByte) {
    expectOrder({"a", std::string("a\0", 2), std::string("a\0b", 3), std::string("a\0C", 3)});
}

int signOf(int order) {
    return (order > 0) - (order < 0);
}

class ComparisonOrder : public CompareTests, public testing::WithParamInterface<const char*> {
protected:
    ComparisonOrder() : CompareTests(GetParam()) {}
};

TEST_P(ComparisonOrder, IsAStrictWeakOneWhateverIsCompared) {
    const Names texts = {"",     "a",     "A",        "á",   "a\u0301", "\u0301", "\u0301a", "ab",
                         "aB",   "å",     "AA",       "æ",   "ae",      "ß",      "ss",      "SS",
                         "z",    "ž",     "i",        "I",   "ı",       "İ",      "i\u0307", "\xC3",
                         "\xFF", "9",     "\xC3\xA1", "й",   "и",       "Σ",      "ς",       "漢",
                         "🎨",    "\xFFz", "-",        "a-b", "a b",     " "};
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

INSTANTIATE_TEST_SUITE_P(EachLocale, ComparisonOrder,
                         testing::Values("C", "C.UTF-8", "de_DE.UTF-8", "sv_SE.UTF-8",
                                         "tr_TR.UTF-8"));

class HostsComparison : public testing::Test {
protected:
    ~HostsComparison() override { setLocalizedComparison(nullptr); }
};

int backwards(std::string_view a, std::string_view b) {
    return b.compare(a);
}

TEST_F(HostsComparison, IsAskedInsteadOfTheLocale) {
    setLocalizedComparison(backwards);
    expectOrder({"b", "a", "Z", ""});
    setLocalizedComparison(nullptr);
    expectOrder({"", "a", "b", "Z"});
}

TEST_F(HostsComparison, TakesForAlikeWhatItRaisesFor) {
    setLocalizedComparison(
        [](std::string_view, std::string_view) -> int { throw std::runtime_error("no"); });
    expectSame("a", "b");
}

TEST_F(HostsComparison, MayReplaceItself) {
    const auto alive = std::make_shared<int>(0);
    setLocalizedComparison([alive](std::string_view a, std::string_view b) {
        setLocalizedComparison(backwards);
        return 7 * localizedCaseInsensitiveCompare(a, b);
    });
    EXPECT_EQ(alive.use_count(), 2);
    EXPECT_EQ(localizedCaseInsensitiveCompare("a", "b"), 7);
    EXPECT_EQ(alive.use_count(), 1);
    EXPECT_EQ(localizedCaseInsensitiveCompare("a", "b"), 1);
}

TEST_F(HostsComparison, CanBeReplacedWhileOthersCompare) {
    std::atomic<bool> done = false;
    zeltest::runAtOnce({[&] {
                            for (int i = 0; i < 2000; ++i) {
                                setLocalizedComparison(
                                    [i](std::string_view, std::string_view) { return i + 1; });
                            }
                            done = true;
                        },
                        [&] {
                            while (!done) {
                                EXPECT_NE(localizedCaseInsensitiveCompare("a", "b"), 0);
                            }
                        }});
    EXPECT_EQ(localizedCaseInsensitiveCompare("a", "b"), 2000);
}

} // namespace
} // namespace zel_tests
