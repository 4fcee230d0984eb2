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
#include <vector>

namespace {

using namespace zeltest;
using zel::ZelStyleDomain;
using zel::ZelStyleManager;

/// The default domain's styles are made once per process, so that each of these wants a process of
/// its own; in a process that has had its setup, they are skipped.
class ManagerSetup : public StylingTests {
protected:
    void SetUp() override {
        static bool had = false;
        if (std::exchange(had, true)) {
            GTEST_SKIP() << "this process has had its setup";
        }
        zel::NSBundle::setStringTable(
            [](std::string_view key) { return std::optional<std::string>(key); });
    }
    ~ManagerSetup() override {
        while (!manager->modes().empty()) {
            manager->removeMode(manager->modes().front());
        }
        zel::NSBundle::setStringTable(nullptr);
    }
    static void store(std::string_view identifier) {
        zel::NSUserDefaults::standardUserDefaults().setObject(text(identifier),
                                                              "style-manager-active-mode");
    }
    void listen() { domain->registerChangeHandler(recorder.handler("owner"), owner); }
    /// The main style of one of the default domain's schemes.
    [[nodiscard]] std::shared_ptr<zel::ZelStyle> mainOf(std::string_view scheme) const {
        return domain->schemeForIdentifier(scheme)->styleForIdentifier("main");
    }

    const std::shared_ptr<ZelStyleManager> manager = ZelStyleManager::sharedStyleManager();
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<Plain> owner = makePlain();
    Recorder recorder;
};

TEST_F(ManagerSetup, BeforeItTheSharedManagerHasNoModesAndHasAppliedNothing) {
    EXPECT_TRUE(manager->modes().empty());
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->mainStyle(), nullptr);
}

TEST_F(ManagerSetup, WithNothingStoredTheDefaultDomainFollowsTheSystemAndThreeModesStand) {
    ZelStyleManager::setup();
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_EQ(manager->activeModeIdentifier(), text("follow-system"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"always-light", "always-dark", "follow-system"}));
    makeSystemDark();
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

TEST_F(ManagerSetup, TheModesHaveTheirRanksNamesAndManager) {
    ZelStyleManager::setup();
    ASSERT_EQ(manager->modes().size(), 3U);
    EXPECT_EQ(manager->modes()[0]->rank(), 0U);
    EXPECT_EQ(manager->modes()[1]->rank(), 10U);
    EXPECT_EQ(manager->modes()[2]->rank(), 100U);
    EXPECT_EQ(manager->modes()[0]->name(), "Light");
    EXPECT_EQ(manager->modes()[1]->name(), "Dark");
    EXPECT_EQ(manager->modes()[2]->name(), "Follow system appearance");
    for (const auto& mode : manager->modes()) {
        EXPECT_EQ(mode->manager(), manager);
        EXPECT_FALSE(mode->active());
    }
    EXPECT_EQ(manager->activeMode(), nullptr);
}

TEST_F(ManagerSetup, TheModesTakeTheirNamesFromTheStringTable) {
    zel::NSBundle::setStringTable([](std::string_view key) -> std::optional<std::string> {
        return key == "Dark" ? std::nullopt : std::optional("<" + std::string(key) + ">");
    });
    ZelStyleManager::setup();
    ASSERT_EQ(manager->modes().size(), 3U);
    EXPECT_EQ(manager->modes()[0]->name(), "<Light>");
    EXPECT_EQ(manager->modes()[1]->name(), "Dark"); // not translated: the key itself
    EXPECT_EQ(manager->modes()[2]->name(), "<Follow system appearance>");
}

TEST_F(ManagerSetup, OnALightSystemHandlersRegisteredBeforeAreCalledOnceForTheLightStyle) {
    listen();
    ZelStyleManager::setup();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0}, {"owner", mainOf("light"), 1}}));
}

TEST_F(ManagerSetup, OnADarkSystemHandlersRegisteredBeforeHearDarkThenLightThenDark) {
    makeSystemDark();
    listen();
    ZelStyleManager::setup();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0},
                                           {"owner", mainOf("dark"), 1},
                                           {"owner", mainOf("light"), 1},
                                           {"owner", mainOf("dark"), 1}}));
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

TEST_F(ManagerSetup, OnADarkSystemThatTheTrackerHasNotToldOfYetTheOrderIsTheSame) {
    makeSystem("NSAppearanceNameDarkAqua"); // its notification still waits in the main queue
    listen();
    ZelStyleManager::setup();
    zel::NSMainQueue::mainQueue().drain();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0},
                                           {"owner", mainOf("dark"), 1},
                                           {"owner", mainOf("light"), 1},
                                           {"owner", mainOf("dark"), 1}}));
}

TEST_F(ManagerSetup, AStoredAlwaysDarkIsAppliedAfterAlwaysLight) {
    store("always-dark");
    listen();
    ZelStyleManager::setup();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0},
                                           {"owner", mainOf("light"), 1},
                                           {"owner", mainOf("dark"), 1}}));
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

TEST_F(ManagerSetup, AChoiceSurvivesARestart) {
    const auto defaults = std::make_shared<zel::NSUserDefaultsInMemory>();
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    const auto before = zel::alloc<ZelStyleManager>();
    before->init();
    before->setActiveModeIdentifier("always-dark");
    // What a new process would find: the same store, and nothing in memory.
    ZelStyleDomain::domainForIdentifier("_reset");
    zel::NSUserDefaults::standardUserDefaults().setStore(defaults);
    ZelStyleManager::setup();
    const auto after = ZelStyleDomain::defaultDomain();
    EXPECT_EQ(after->currentScheme(), after->darkScheme());
    EXPECT_FALSE(after->schemeFollowsSystem());
    EXPECT_EQ(manager->activeModeIdentifier(), text("always-dark"));
}

TEST_F(ManagerSetup, AStoredUnknownIdentifierSelectsAlwaysLight) {
    store("sepia");
    makeSystemDark();
    ZelStyleManager::setup();
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(manager->activeModeIdentifier(), text("sepia"));
}

TEST_F(ManagerSetup, ASecondSetupAddsTheModesAgainAndTheFirstOfTwoIsApplied) {
    ZelStyleManager::setup();
    const auto first = manager->modes();
    const auto lightMain = mainOf("light");
    ZelStyleManager::setup();
    EXPECT_EQ(identifiersOf(*manager), (Names{"always-light", "always-light", "always-dark",
                                              "always-dark", "follow-system", "follow-system"}));
    EXPECT_EQ(manager->modes()[0], first[0]);
    EXPECT_EQ(manager->modes()[2], first[1]);
    EXPECT_EQ(manager->modes()[4], first[2]);
    EXPECT_EQ(zel::ZelStyleManagerInternals::shouldBeActiveMode(*manager), first[2]);
    EXPECT_EQ(mainOf("light"), lightMain); // the styles are not made again
}

TEST(SharedManager, ThreadsThatAskAtOnceGetTheSameOne) {
    std::vector<std::shared_ptr<ZelStyleManager>> got(8);
    std::vector<std::function<void()>> asking;
    for (auto& each : got) {
        asking.emplace_back([&each] { each = ZelStyleManager::sharedStyleManager(); });
    }
    runAtOnce(asking);
    ASSERT_NE(got[0], nullptr);
    for (const auto& each : got) {
        EXPECT_EQ(each, got[0]);
    }
}

} // namespace
