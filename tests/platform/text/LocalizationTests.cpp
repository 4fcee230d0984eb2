// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

namespace zel_tests {
namespace {

using zel::NSBundle;

struct LocalizedString : ::testing::Test {
    LocalizedString() {
        for (const char* const name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_COLLATE", "LANG"}) {
            ::unsetenv(name);
        }
    }
    static std::string dark() { return NSBundle::localizedStringForKey("Dark"); }
    static std::string darkIn(const char* locale) {
        ::setenv("LANG", locale, 1);
        return dark();
    }
    static std::string darkFor(const char* languages) {
        ::setenv("LANG", "en_US.UTF-8", 1);
        ::setenv("LANGUAGE", languages, 1);
        return dark();
    }
};

TEST_F(LocalizedString, IsTheKeyWithoutALocale) {
    EXPECT_EQ(NSBundle::localizedStringForKey("Light"), "Light");
    EXPECT_EQ(NSBundle::localizedStringForKey("Dark"), "Dark");
    EXPECT_EQ(NSBundle::localizedStringForKey("Follow system appearance"),
              "Follow system appearance");
}

TEST_F(LocalizedString, IsTheKeyWhereThereIsNoTranslation) {
    ::setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_EQ(NSBundle::localizedStringForKey("Sepia"), "Sepia");
    EXPECT_EQ(NSBundle::localizedStringForKey(""), "");
    EXPECT_EQ(darkIn("tlh_KX.UTF-8"), "Dark");
}

TEST_F(LocalizedString, HasAllThreeTextsInALanguage) {
    ::setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_EQ(NSBundle::localizedStringForKey("Light"), "Hell");
    EXPECT_EQ(NSBundle::localizedStringForKey("Dark"), "Dunkel");
    EXPECT_EQ(NSBundle::localizedStringForKey("Follow system appearance"),
              "Systemdarstellung folgen");
}

TEST_F(LocalizedString, IsTranslatedIntoManyLanguages) {
    const std::pair<const char*, const char*> expected[] = {
        {"ar_EG", "داكن"},      {"bg_BG", "Тъмен"},  {"ca_ES", "Fosc"},   {"cs_CZ", "Tmavý"},
        {"da_DK", "Mørk"},      {"de_AT", "Dunkel"}, {"el_GR", "Σκούρα"}, {"es_MX", "Oscuro"},
        {"et_EE", "Tume"},      {"fi_FI", "Tumma"},  {"fr_CA", "Sombre"}, {"gl_ES", "Escuro"},
        {"he_IL", "כהה"},       {"hr_HR", "Tamno"},  {"hu_HU", "Sötét"},  {"id_ID", "Gelap"},
        {"is_IS", "Dökkt"},     {"it_IT", "Scuro"},  {"ja_JP", "ダーク"}, {"ko_KR", "다크"},
        {"lt_LT", "Tamsi"},     {"lv_LV", "Tumšs"},  {"nb_NO", "Mørk"},   {"nl_NL", "Donker"},
        {"nn_NO", "Mørk"},      {"no_NO", "Mørk"},   {"pl_PL", "Ciemny"}, {"pt_PT", "Escuro"},
        {"ro_RO", "Întunecat"}, {"ru_RU", "Тёмный"}, {"sk_SK", "Tmavý"},  {"sl_SI", "Temno"},
        {"sr_RS", "Тамно"},     {"sv_SE", "Mörkt"},  {"tr_TR", "Koyu"},   {"uk_UA", "Темний"},
        {"vi_VN", "Tối"},       {"zh_CN", "深色"},   {"en_GB", "Dark"},
    };
    for (const auto& [locale, text] : expected) {
        EXPECT_EQ(darkIn(locale), text) << locale;
        EXPECT_NE(NSBundle::localizedStringForKey("Light"), text) << locale;
        EXPECT_EQ(NSBundle::localizedStringForKey("Follow system appearance") ==
                      "Follow system appearance",
                  std::string(locale) == "en_GB")
            << locale;
    }
}

TEST_F(LocalizedString, TakesTheMostSpecificLocaleThereIs) {
    const auto follow = [](const char* locale) {
        ::setenv("LANG", locale, 1);
        return NSBundle::localizedStringForKey("Follow system appearance");
    };
    EXPECT_EQ(follow("pt_BR.UTF-8"), "Seguir a aparência do sistema");
    EXPECT_EQ(follow("pt_PT.UTF-8"), "Seguir o aspeto do sistema");
    EXPECT_EQ(follow("pt"), "Seguir o aspeto do sistema");
    EXPECT_EQ(follow("zh_TW.UTF-8"), "跟隨系統外觀");
    EXPECT_EQ(follow("zh_HK.Big5"), "跟隨系統外觀");
    EXPECT_EQ(follow("zh_CN.GB18030"), "跟随系统外观");
    EXPECT_EQ(follow("zh_SG"), "跟随系统外观");
    EXPECT_EQ(follow("sr_RS.UTF-8@latin"), "Prati izgled sistema");
    EXPECT_EQ(follow("sr@latin"), "Prati izgled sistema");
    EXPECT_EQ(follow("sr_RS@unheard"), "Прати изглед система");
    EXPECT_EQ(follow("de_DE.ISO-8859-1@euro"), "Systemdarstellung folgen");
}

TEST_F(LocalizedString, FollowsTheFirstVariableThatIsNotEmpty) {
    EXPECT_EQ(darkIn("fr_FR.UTF-8"), "Sombre");
    ::setenv("LC_MESSAGES", "it_IT.UTF-8", 1);
    EXPECT_EQ(dark(), "Scuro");
    ::setenv("LC_ALL", "fi_FI.UTF-8", 1);
    EXPECT_EQ(dark(), "Tumma");
    ::setenv("LC_ALL", "", 1);
    EXPECT_EQ(dark(), "Scuro");
    ::setenv("LC_MESSAGES", "", 1);
    EXPECT_EQ(dark(), "Sombre");
    ::setenv("LC_COLLATE", "nl_NL.UTF-8", 1);
    EXPECT_EQ(dark(), "Sombre");
}

TEST_F(LocalizedString, PrefersTheListOfLanguages) {
    EXPECT_EQ(darkFor("sv"), "Mörkt");
    EXPECT_EQ(darkFor("tlh:xx_YY:de_CH:sv"), "Dunkel");
    EXPECT_EQ(darkFor(":::pt_BR.UTF-8::de"), "Escuro");
    EXPECT_EQ(darkFor("sr@latin:de"), "Tamno");
    ::setenv("LANG", "de_DE.UTF-8", 1);
    ::setenv("LANGUAGE", "", 1);
    EXPECT_EQ(dark(), "Dunkel");
}

TEST_F(LocalizedString, AListWithNoKnownLanguageLeavesTheKey) {
    ::setenv("LANG", "de_DE.UTF-8", 1);
    ::setenv("LANGUAGE", "tlh:xx", 1);
    EXPECT_EQ(dark(), "Dark");
    ::setenv("LANGUAGE", ":", 1);
    EXPECT_EQ(dark(), "Dark");
}

TEST_F(LocalizedString, EnglishInTheListComesBeforeWhatFollowsIt) {
    EXPECT_EQ(darkFor("en:de"), "Dark");
    EXPECT_EQ(darkFor("en_GB:de"), "Dark");
    EXPECT_EQ(darkFor("tlh:C:de"), "Dark");
    EXPECT_EQ(darkFor("POSIX:de"), "Dark");
}

TEST_F(LocalizedString, AListOfLanguagesCountsForNothingInThePortableLocale) {
    ::setenv("LANGUAGE", "de", 1);
    EXPECT_EQ(dark(), "Dark");
    for (const char* const locale : {"C", "POSIX", "C.UTF-8", "C.utf8", ""}) {
        EXPECT_EQ(darkIn(locale), "Dark") << locale;
    }
    ::setenv("LANG", "fr_FR.UTF-8", 1);
    EXPECT_EQ(dark(), "Dunkel");
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(dark(), "Dark");
}

TEST_F(LocalizedString, SurvivesAnyNameOfALocale) {
    for (const char* const locale :
         {"@", "_", ".", "_@.", "de@", "de_", "@latin", "xx_..@@", "\xFF\xFE", ":"}) {
        const std::string text = darkIn(locale);
        EXPECT_TRUE(text == "Dark" || text == "Dunkel") << locale;
    }
    EXPECT_EQ(darkIn(std::string(100'000, 'x').c_str()), "Dark");
}

TEST_F(LocalizedString, ComesFromTheHostsTableAlone) {
    ::setenv("LANG", "de_DE.UTF-8", 1);
    NSBundle::setStringTable([](std::string_view key) -> std::optional<std::string> {
        return key == "Light" ? std::optional<std::string>("Taghell") : std::nullopt;
    });
    EXPECT_EQ(NSBundle::localizedStringForKey("Light"), "Taghell");
    EXPECT_EQ(dark(), "Dark");
    NSBundle::setStringTable(nullptr);
    EXPECT_EQ(dark(), "Dunkel");
}

TEST_F(LocalizedString, IsTheKeyWhereTheHostsTableThrows) {
    NSBundle::setStringTable(
        [](std::string_view) -> std::optional<std::string> { throw std::runtime_error("broken"); });
    EXPECT_EQ(dark(), "Dark");
}

TEST_F(LocalizedString, TheHostsTableMayReplaceItself) {
    const auto alive = std::make_shared<int>(0);
    NSBundle::setStringTable([alive](std::string_view) -> std::optional<std::string> {
        NSBundle::setStringTable(nullptr);
        return "last " + NSBundle::localizedStringForKey("Dark");
    });
    EXPECT_EQ(alive.use_count(), 2);
    EXPECT_EQ(dark(), "last Dark");
    EXPECT_EQ(alive.use_count(), 1);
}

TEST_F(LocalizedString, TheHostsTableCanBeReplacedWhileOthersAsk) {
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) {
            NSBundle::setStringTable([i](std::string_view) { return std::to_string(i); });
        }
        done = true;
    });
    while (!done) {
        EXPECT_FALSE(dark().empty());
    }
    writer.join();
    EXPECT_EQ(dark(), "1999");
}

} // namespace
} // namespace zel_tests
