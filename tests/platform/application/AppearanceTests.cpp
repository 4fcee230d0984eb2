// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSAppearance.h>
#include <ZelStyleKit/NSApplication.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using zel::NSAppearance;
using zel::NSApplication;

std::optional<std::string> bestMatch(std::string_view name,
                                     const std::vector<std::string_view>& names) {
    return NSAppearance::appearanceNamed(name).bestMatchFromAppearancesWithNames(names);
}

const std::vector<std::string_view> darkAndLight{"NSAppearanceNameDarkAqua",
                                                 "NSAppearanceNameAqua"};

TEST(Appearance, TheStandardAppearancesHaveTheirNames) {
    EXPECT_EQ(zel::NSAppearanceNameAqua, "NSAppearanceNameAqua");
    EXPECT_EQ(zel::NSAppearanceNameDarkAqua, "NSAppearanceNameDarkAqua");
    EXPECT_EQ(zel::NSAppearanceNameVibrantLight, "NSAppearanceNameVibrantLight");
    EXPECT_EQ(zel::NSAppearanceNameVibrantDark, "NSAppearanceNameVibrantDark");
    EXPECT_EQ(zel::NSAppearanceNameAccessibilityHighContrastAqua,
              "NSAppearanceNameAccessibilityHighContrastAqua");
    EXPECT_EQ(zel::NSAppearanceNameAccessibilityHighContrastDarkAqua,
              "NSAppearanceNameAccessibilityHighContrastDarkAqua");
}

TEST(Appearance, AnAppearanceMatchesItselfWhateverTheOrder) {
    EXPECT_EQ(bestMatch("NSAppearanceNameAqua", darkAndLight), "NSAppearanceNameAqua");
    EXPECT_EQ(bestMatch("NSAppearanceNameDarkAqua", darkAndLight), "NSAppearanceNameDarkAqua");
    EXPECT_EQ(
        bestMatch("NSAppearanceNameDarkAqua", {"NSAppearanceNameAqua", "NSAppearanceNameDarkAqua"}),
        "NSAppearanceNameDarkAqua");
    EXPECT_EQ(bestMatch("of my own", {"NSAppearanceNameAqua", "of my own"}), "of my own");
}

TEST(Appearance, AVariantMatchesThePlainAppearanceItComesFrom) {
    EXPECT_EQ(bestMatch("NSAppearanceNameVibrantLight", darkAndLight), "NSAppearanceNameAqua");
    EXPECT_EQ(bestMatch("NSAppearanceNameVibrantDark", darkAndLight), "NSAppearanceNameDarkAqua");
    EXPECT_EQ(bestMatch("NSAppearanceNameAccessibilityHighContrastAqua", darkAndLight),
              "NSAppearanceNameAqua");
    EXPECT_EQ(bestMatch("NSAppearanceNameAccessibilityHighContrastDarkAqua", darkAndLight),
              "NSAppearanceNameDarkAqua");
}

TEST(Appearance, AVariantThatIsListedMatchesItselfAndNotWhatItComesFrom) {
    EXPECT_EQ(bestMatch("NSAppearanceNameVibrantDark",
                        {"NSAppearanceNameDarkAqua", "NSAppearanceNameVibrantDark"}),
              "NSAppearanceNameVibrantDark");
}

TEST(Appearance, APlainAppearanceMatchesNoneOfItsVariants) {
    EXPECT_EQ(bestMatch("NSAppearanceNameDarkAqua", {"NSAppearanceNameVibrantDark"}), std::nullopt);
}

TEST(Appearance, WhatIsUnknownOrUnlistedMatchesNothing) {
    EXPECT_EQ(bestMatch("of my own", darkAndLight), std::nullopt);
    EXPECT_EQ(bestMatch("", darkAndLight), std::nullopt);
    EXPECT_EQ(bestMatch("NSAppearanceNameDarkAqua", {"NSAppearanceNameAqua"}), std::nullopt);
    EXPECT_EQ(bestMatch("NSAppearanceNameVibrantDark", {"NSAppearanceNameAqua"}), std::nullopt);
    EXPECT_EQ(bestMatch("NSAppearanceNameDarkAqua", {}), std::nullopt);
}

TEST(Appearance, AppearancesOfOneNameAreEqual) {
    EXPECT_EQ(NSAppearance::appearanceNamed("x"), NSAppearance::appearanceNamed("x"));
    EXPECT_NE(NSAppearance::appearanceNamed("x"), NSAppearance::appearanceNamed("X"));
    EXPECT_EQ(NSAppearance::appearanceNamed("x").name(), "x");
}

TEST(Application, ThereIsNoneUntilSomebodyAsksForIt) {
    if (zel::NSApp()) {
        GTEST_SKIP() << "an earlier test of this process has asked for it";
    }
    const auto& application = NSApplication::sharedApplication();
    ASSERT_NE(application, nullptr);
    EXPECT_EQ(zel::NSApp(), application);
    EXPECT_EQ(application->effectiveAppearance().name(), "NSAppearanceNameAqua");
}

TEST(Application, ThreadsThatAskAtOnceGetTheSameOne) {
    std::vector<std::shared_ptr<NSApplication>> got(8);
    std::vector<std::function<void()>> asking;
    for (auto& each : got) {
        asking.emplace_back([&each] { each = NSApplication::sharedApplication(); });
    }
    zeltest::runAtOnce(asking);
    for (const auto& each : got) {
        EXPECT_EQ(each, zel::NSApp());
    }
}

/// Writes down the appearance that it finds whenever it is told of it.
class Witness : public zel::NSObject {
public:
    std::vector<std::string> seen;

    void observeValueForKeyPath(std::string_view keyPath, NSObject& ofObject,
                                const zel::NSKeyValueChange& change,
                                const void* /*context*/) override {
        const auto& application = dynamic_cast<const NSApplication&>(ofObject);
        seen.push_back(std::string(keyPath) + (change.isPrior ? " before " : " after ") +
                       application.effectiveAppearance().name());
    }
};

TEST(Application, ItsObserversHearOfEachChangeOfItsAppearanceAndOfNothingElse) {
    const auto application = zel::alloc<NSApplication>();
    const auto witness = zel::alloc<Witness>();
    application->addObserver(witness, "effectiveAppearance", zel::NSKeyValueObservingOptions::Prior,
                             nullptr);
    application->setEffectiveAppearance(NSAppearance::appearanceNamed("NSAppearanceNameAqua"));
    EXPECT_TRUE(witness->seen.empty()); // as it was
    application->setEffectiveAppearance(NSAppearance::appearanceNamed("NSAppearanceNameDarkAqua"));
    const std::vector<std::string> expected{"effectiveAppearance before NSAppearanceNameAqua",
                                            "effectiveAppearance after NSAppearanceNameDarkAqua"};
    EXPECT_EQ(witness->seen, expected);
    application->setEffectiveAppearance(NSAppearance::appearanceNamed("NSAppearanceNameDarkAqua"));
    EXPECT_EQ(witness->seen.size(), 2U);
}

} // namespace
