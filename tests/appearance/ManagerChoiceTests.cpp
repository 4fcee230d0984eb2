// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/ManagerFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace zeltest;
using zel::ZelStyleManagerInternals;

class ManagerChoice : public ManagerTests {
protected:
    /// The identifier of the mode that would be applied now.
    std::string chosen() const {
        const auto mode = ZelStyleManagerInternals::shouldBeActiveMode(*manager);
        return mode ? mode->identifier().value_or("nil") : "none";
    }
};

/// Counts how often the chosen mode is read, and refuses to write when told to.
class CountingDefaults : public zel::NSUserDefaultsInMemory {
public:
    int reads = 0;
    bool refuses = false;

    std::optional<zel::NSUserDefaultsValue> objectForKey(std::string_view key) override {
        reads += key == "style-manager-active-mode";
        return zel::NSUserDefaultsInMemory::objectForKey(key);
    }
    bool setObject(const std::optional<zel::NSUserDefaultsValue>& value,
                   std::string_view forKey) override {
        return !refuses && zel::NSUserDefaultsInMemory::setObject(value, forKey);
    }
};

/// Does something where it is read next, once.
class CallingDefaults : public zel::NSUserDefaultsInMemory {
public:
    std::function<void()> onRead;

    std::optional<zel::NSUserDefaultsValue> objectForKey(std::string_view key) override {
        if (const auto once = std::exchange(onRead, nullptr)) {
            once();
        }
        return zel::NSUserDefaultsInMemory::objectForKey(key);
    }
};

TEST_F(ManagerChoice, WithNothingStoredTheChoiceIsToFollowTheSystem) {
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(manager->activeModeIdentifier(), text("follow-system"));
    addStandardModes();
    EXPECT_EQ(stored(), std::nullopt); // reading and applying store nothing
    EXPECT_TRUE(domain->schemeFollowsSystem());
}

TEST_F(ManagerChoice, ChoosingStoresTheIdentifierAndAppliesTheMode) {
    addStandardModes();
    EXPECT_TRUE(manager->setActiveModeIdentifier("always-dark"));
    EXPECT_EQ(stored(), text("always-dark"));
    EXPECT_EQ(manager->activeModeIdentifier(), text("always-dark"));
    EXPECT_TRUE(isDark());
    EXPECT_FALSE(domain->schemeFollowsSystem());
}

TEST_F(ManagerChoice, AStoredChoiceIsAppliedByANewManager) {
    manager->setActiveModeIdentifier("always-dark");
    const auto next = zel::alloc<zel::ZelStyleManager>();
    next->init();
    EXPECT_EQ(next->activeModeIdentifier(), text("always-dark"));
    next->addMode(makeMode("always-light", 0));
    EXPECT_TRUE(isLight());
    next->addMode(makeMode("always-dark", 10));
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerChoice, FromFollowingADarkSystemToAlwaysDarkHandlersHearLightAndThenDark) {
    makeSystemDark();
    addStandardModes();
    ASSERT_TRUE(isDark());
    listen();
    manager->setActiveModeIdentifier("always-dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}, {"owner", dark, 1}}));
}

TEST_F(ManagerChoice, BackToFollowingADarkSystemIsOneSwitchAtMost) {
    makeSystemDark();
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    listen();
    manager->setActiveModeIdentifier("follow-system");
    EXPECT_TRUE(recorder.take().empty()); // dark all along
    manager->setActiveModeIdentifier("always-light");
    recorder.take();
    manager->setActiveModeIdentifier("follow-system");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(ManagerChoice, AnUnknownIdentifierIsStoredAndSelectsTheLowestRankedMode) {
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    manager->setActiveModeIdentifier("sepia");
    EXPECT_EQ(manager->activeModeIdentifier(), text("sepia"));
    EXPECT_EQ(stored(), text("sepia"));
    EXPECT_TRUE(isLight());
    EXPECT_FALSE(domain->schemeFollowsSystem());
}

TEST_F(ManagerChoice, NoneRemovesTheEntryAndFollowsTheSystemAgain) {
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    EXPECT_TRUE(manager->setActiveModeIdentifier(std::nullopt));
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(manager->activeModeIdentifier(), text("follow-system"));
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerChoice, TheEmptyIdentifierIsStoredAndIsNotNone) {
    addStandardModes();
    manager->setActiveModeIdentifier("");
    EXPECT_EQ(stored(), text(""));
    EXPECT_EQ(manager->activeModeIdentifier(), text(""));
    EXPECT_EQ(chosen(), "always-light");
    manager->addMode(makeMode("", 50));
    EXPECT_EQ(chosen(), "");
}

TEST_F(ManagerChoice, AModeWithoutAnIdentifierIsChosenByNone) {
    addStandardModes();
    manager->addMode(makeMode(std::nullopt, 50));
    manager->setActiveModeIdentifier("");
    EXPECT_EQ(chosen(), "always-light");
    manager->setActiveModeIdentifier(std::nullopt);
    EXPECT_EQ(manager->activeModeIdentifier(), text("follow-system"));
    EXPECT_EQ(chosen(), "follow-system");
}

TEST_F(ManagerChoice, AModeWithoutAnIdentifierIsTheFallbackWhereItIsTheFirst) {
    addStandardModes();
    const auto first = makeMode(std::nullopt, 0);
    manager->addMode(first);
    manager->setActiveModeIdentifier("always-dark");
    EXPECT_EQ(chosen(), "always-dark");
    manager->setActiveModeIdentifier("sepia");
    EXPECT_EQ(ZelStyleManagerInternals::shouldBeActiveMode(*manager), first);
    EXPECT_TRUE(isDark()); // applying it does nothing
}

TEST_F(ManagerChoice, TheSameChoiceAgainIsAppliedAgain) {
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    domain->setCurrentScheme(domain->lightScheme());
    listen();
    manager->setActiveModeIdentifier("always-dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(ManagerChoice, ChoosingToFollowWhileFollowingLeavesASchemeThatWasSetByHand) {
    addStandardModes();
    domain->setCurrentScheme(domain->darkScheme());
    manager->setActiveModeIdentifier("follow-system");
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerChoice, WithNoModesAnyIdentifierIsStoredAndNothingApplied) {
    listen();
    for (const std::string_view identifier : {"always-dark", "follow-system", "sepia"}) {
        manager->setActiveModeIdentifier(identifier);
        EXPECT_EQ(stored(), text(identifier));
    }
    EXPECT_EQ(chosen(), "none");
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
}

TEST_F(ManagerChoice, AModeOfAnApplicationsOwnCanBeChosenAndChangesNothing) {
    addStandardModes();
    manager->addMode(makeMode("sepia", 5));
    manager->setActiveModeIdentifier("always-dark");
    listen();
    manager->setActiveModeIdentifier("sepia");
    EXPECT_EQ(chosen(), "sepia");
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerChoice, AStoredValueThatIsNoTextMatchesNoModeAndReadsBackAsItIs) {
    const zel::NSUserDefaultsValue number = zel::NSNumber::numberWithLong(1);
    zel::NSUserDefaults::standardUserDefaults().setObject(number, "style-manager-active-mode");
    addStandardModes();
    manager->addMode(makeMode("1", 50));
    EXPECT_EQ(manager->activeModeIdentifier(), number);
    EXPECT_EQ(chosen(), "always-light");
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerChoice, WhatIsStoredIsReadAfreshAndTakesHoldWithTheNextApplication) {
    addStandardModes();
    store("always-dark");
    EXPECT_EQ(manager->activeModeIdentifier(), text("always-dark"));
    EXPECT_TRUE(isLight());
    ZelStyleManagerInternals::updateActiveMode(*manager);
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerChoice, TheStoredIdentifierIsReadForEachModeThatIsCompared) {
    addStandardModes();
    const auto defaults = std::make_shared<CountingDefaults>();
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    EXPECT_EQ(chosen(), "follow-system");
    EXPECT_EQ(defaults->reads, 3);
    store("always-light");
    defaults->reads = 0;
    EXPECT_EQ(chosen(), "always-light");
    EXPECT_EQ(defaults->reads, 1);
}

TEST_F(ManagerChoice, TheListIsNotLockedWhileTheStoreIsRead) {
    addStandardModes();
    const auto defaults = std::make_shared<CallingDefaults>();
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    listen();
    defaults->onRead = [&] {
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        runElsewhere([&] { EXPECT_EQ(manager->activeMode(), nullptr); });
    };
    EXPECT_EQ(chosen(), "follow-system");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
}

TEST_F(ManagerChoice, AStoreMayChangeTheListWhereItIsRead) {
    addStandardModes();
    const auto defaults = std::make_shared<CallingDefaults>();
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    store("sepia");
    defaults->onRead = [&] {
        while (!manager->modes().empty()) {
            manager->removeMode(manager->modes().front());
        }
        manager->addMode(makeMode("ink", 7));
    };
    EXPECT_EQ(chosen(), "ink"); // the lowest-ranked mode that there is now
}

TEST_F(ManagerChoice, AChoiceThatTheStoreRefusesHoldsInThisProcessAndSaysSo) {
    addStandardModes();
    const auto defaults = std::make_shared<CountingDefaults>();
    defaults->refuses = true;
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    EXPECT_FALSE(manager->setActiveModeIdentifier("always-dark"));
    EXPECT_TRUE(isDark());
    EXPECT_EQ(manager->activeModeIdentifier(), text("always-dark"));
    EXPECT_EQ(defaults->objectForKey("style-manager-active-mode"), std::nullopt);
}

TEST_F(ManagerChoice, ThereIsNeverAnActiveMode) {
    EXPECT_EQ(manager->activeMode(), nullptr);
    addStandardModes();
    for (const std::string_view identifier : {"always-light", "always-dark", "follow-system"}) {
        manager->setActiveModeIdentifier(identifier);
        EXPECT_EQ(manager->activeMode(), nullptr);
        for (const auto& mode : manager->modes()) {
            EXPECT_FALSE(mode->active());
        }
    }
}

TEST_F(ManagerChoice, ModesAreChosenByTheirPresentIdentifier) {
    addStandardModes();
    manager->modes()[1]->setIdentifier("sepia");
    manager->setActiveModeIdentifier("always-dark");
    EXPECT_EQ(chosen(), "always-light");
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerChoice, OfTwoModesWithOneIdentifierTheFirstIsChosen) {
    const auto later = makeMode("sepia", 9);
    const auto earlier = makeMode("sepia", 3);
    manager->addMode(later);
    manager->addMode(makeMode("other", 1));
    manager->addMode(earlier);
    store("sepia");
    EXPECT_EQ(ZelStyleManagerInternals::shouldBeActiveMode(*manager), earlier);
}

} // namespace
