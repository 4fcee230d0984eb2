// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/ManagerFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace zeltest;
using zel::ZelStyleManagerInternals;

class ManagerList : public ManagerTests {
protected:
    ~ManagerList() override { zel::setLocalizedComparison(nullptr); }
};

TEST_F(ManagerList, ModesStandByRankLowestFirst) {
    addStandardModes();
    manager->addMode(makeMode("sepia", 5));
    EXPECT_EQ(identifiersOf(*manager),
              (Names{"always-light", "sepia", "always-dark", "follow-system"}));
}

TEST_F(ManagerList, RanksAreUnsignedNumbersOfSixtyFourBits) {
    manager->addMode(makeMode("largest", 18446744073709551615U));
    manager->addMode(makeMode("nine", 9));
    manager->addMode(makeMode("ten", 10));
    manager->addMode(makeMode("large", 9223372036854775808U));
    EXPECT_EQ(identifiersOf(*manager), (Names{"nine", "ten", "large", "largest"}));
}

TEST_F(ManagerList, ModesOfOneRankStandByNameWhateverTheCase) {
    manager->addMode(makeMode("b", 1, "Berry"));
    manager->addMode(makeMode("c", 1, "cherry"));
    manager->addMode(makeMode("a", 1, "apple"));
    manager->addMode(makeMode("z", 0, "zebra"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"z", "a", "b", "c"}));
}

TEST_F(ManagerList, ModesWhoseNamesCompareEqualKeepTheOrderInWhichTheyWereAdded) {
    manager->addMode(makeMode("1", 1, "sepia"));
    manager->addMode(makeMode("2", 1, "SEPIA"));
    manager->addMode(makeMode("3", 1, "Sepia"));
    manager->addMode(makeMode("0", 1, "apple"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"0", "1", "2", "3"}));
}

TEST_F(ManagerList, ModesWithoutANameStandFirstAmongTheirRank) {
    manager->addMode(makeMode("apple", 1, "Apple"));
    manager->addMode(makeMode("empty", 1, ""));
    manager->addMode(makeMode("nil", 1, std::nullopt));
    manager->addMode(makeMode("another nil", 1, std::nullopt));
    manager->addMode(makeMode("lower", 0, "Zebra"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"lower", "nil", "another nil", "empty", "apple"}));
}

TEST_F(ManagerList, NoComparisonIsAskedForAModeWithoutAName) {
    zel::setLocalizedComparison([](std::string_view, std::string_view) {
        ADD_FAILURE() << "it was asked";
        return -1;
    });
    manager->addMode(makeMode("apple", 1, "Apple"));
    manager->addMode(makeMode("nil", 1, std::nullopt));
    manager->addMode(makeMode("another nil", 1, std::nullopt));
    EXPECT_EQ(identifiersOf(*manager), (Names{"nil", "another nil", "apple"}));
}

TEST_F(ManagerList, ModesOfOneRankStandByTheHostsComparison) {
    zel::setLocalizedComparison([](std::string_view a, std::string_view b) {
        return static_cast<int>(a.size()) - static_cast<int>(b.size());
    });
    manager->addMode(makeMode("longest", 1, "Aquamarine"));
    manager->addMode(makeMode("shortest", 1, "Zinc"));
    manager->addMode(makeMode("middle", 1, "Sepia"));
    manager->addMode(makeMode("lowest", 0, "Follow system appearance"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"lowest", "shortest", "middle", "longest"}));
}

TEST_F(ManagerList, AComparisonThatRaisesLeavesModesInTheOrderInWhichTheyWereAdded) {
    zel::setLocalizedComparison(
        [](std::string_view, std::string_view) -> int { throw std::runtime_error("no"); });
    manager->addMode(makeMode("1", 1, "sepia"));
    manager->addMode(makeMode("2", 1, "apple"));
    manager->addMode(makeMode("0", 0, "cherry"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"0", "1", "2"}));
}

TEST_F(ManagerList, AComparisonThatContradictsItselfLosesNoMode) {
    int asked = 0;
    zel::setLocalizedComparison(
        [&](std::string_view, std::string_view) { return asked++ % 3 - 1; });
    Names expected;
    for (int i = 0; i < 100; ++i) {
        manager->addMode(makeMode(std::to_string(i), 1, "name"));
        expected.push_back(std::to_string(i));
    }
    Names identifiers = identifiersOf(*manager);
    std::ranges::sort(identifiers);
    std::ranges::sort(expected);
    EXPECT_EQ(identifiers, expected);
}

TEST_F(ManagerList, AComparisonMayChangeTheList) {
    manager->addMode(makeMode("3", 1, "cherry"));
    bool changed = false;
    zel::setLocalizedComparison([&](std::string_view a, std::string_view b) {
        if (!std::exchange(changed, true)) {
            manager->addMode(makeMode("2", 1, "berry"));
            runElsewhere([&] { manager->addMode(makeMode("4", 1, "damson")); });
        }
        return a.compare(b);
    });
    manager->addMode(makeMode("1", 1, "apple"));
    EXPECT_EQ(identifiersOf(*manager), (Names{"1", "2", "3", "4"}));
}

TEST_F(ManagerList, AChangedRankCountsFromTheNextAdditionOn) {
    const auto sepia = makeMode("sepia", 5);
    manager->addMode(sepia);
    manager->addMode(makeMode("always-dark", 10));
    sepia->setRank(50);
    EXPECT_EQ(identifiersOf(*manager), (Names{"sepia", "always-dark"}));
    manager->addMode(makeMode("other", 20));
    EXPECT_EQ(identifiersOf(*manager), (Names{"always-dark", "other", "sepia"}));
}

TEST_F(ManagerList, TheListIsTheLiveOne) {
    const auto& modes = manager->modes();
    EXPECT_TRUE(modes.empty());
    addStandardModes();
    EXPECT_EQ(modes.size(), 3U);
    manager->removeMode(modes.front());
    EXPECT_EQ(modes.size(), 2U);
    EXPECT_EQ(&manager->modes(), &modes);
}

TEST_F(ManagerList, AnAddedModeBelongsToTheManager) {
    const auto mode = makeMode("sepia", 0);
    manager->addMode(mode);
    EXPECT_EQ(mode->manager(), manager);
    manager->removeMode(mode);
    EXPECT_EQ(mode->manager(), nullptr);
}

TEST_F(ManagerList, AModeAddedToASecondManagerBelongsToThatAndStandsInBothLists) {
    const auto second = zel::alloc<zel::ZelStyleManager>();
    second->init();
    const auto mode = makeMode("sepia", 0);
    manager->addMode(mode);
    second->addMode(mode);
    EXPECT_EQ(mode->manager(), second);
    EXPECT_EQ(identifiersOf(*manager), Names{"sepia"});
    manager->removeMode(mode);
    EXPECT_EQ(mode->manager(), nullptr);
    EXPECT_EQ(identifiersOf(*second), Names{"sepia"});
}

TEST_F(ManagerList, EveryManagerAppliesItsModesToTheDefaultDomain) {
    const auto second = zel::alloc<zel::ZelStyleManager>();
    second->init();
    addStandardModes();
    second->addMode(makeMode("always-dark", 0));
    EXPECT_TRUE(isDark());
    manager->setActiveModeIdentifier("always-light");
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerList, AnAdditionAppliesTheChosenMode) {
    store("always-dark");
    manager->addMode(makeMode("sepia", 0));
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    manager->addMode(makeMode("always-dark", 10));
    EXPECT_TRUE(isDark());
    domain->setCurrentScheme(domain->lightScheme());
    manager->addMode(makeMode("another", 20));
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerList, ARemovalAppliesTheModeThatIsChosenThen) {
    makeSystemDark();
    addStandardModes();
    ASSERT_TRUE(isDark());
    manager->removeMode(manager->modes()[2]); // "follow-system", the chosen one
    EXPECT_TRUE(isLight());
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(identifiersOf(*manager), (Names{"always-light", "always-dark"}));
}

TEST_F(ManagerList, RemovingAModeThatIsNotThereClearsItsManagerAndAppliesTheChosenMode) {
    const auto second = zel::alloc<zel::ZelStyleManager>();
    second->init();
    const auto elsewhere = makeMode("sepia", 0);
    second->addMode(elsewhere);
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    domain->setCurrentScheme(domain->lightScheme());
    manager->removeMode(elsewhere);
    EXPECT_EQ(elsewhere->manager(), nullptr);
    EXPECT_EQ(manager->modes().size(), 3U);
    EXPECT_EQ(second->modes().size(), 1U);
    EXPECT_TRUE(isDark());
}

TEST_F(ManagerList, AModeAddedTwiceStandsTwiceAndOneRemovalRemovesBoth) {
    const auto mode = makeMode("sepia", 0);
    manager->addMode(mode);
    manager->addMode(makeMode("other", 0));
    manager->addMode(mode);
    EXPECT_EQ(identifiersOf(*manager).size(), 3U);
    manager->removeMode(mode);
    EXPECT_EQ(identifiersOf(*manager), Names{"other"});
}

TEST_F(ManagerList, AModeIsRemovedByIdentityAndNotByItsFields) {
    const auto one = makeMode("sepia", 0, "Sepia");
    const auto twin = makeMode("sepia", 0, "Sepia");
    manager->addMode(one);
    manager->addMode(twin);
    manager->removeMode(one);
    ASSERT_EQ(manager->modes().size(), 1U);
    EXPECT_EQ(manager->modes().front(), twin);
}

TEST_F(ManagerList, AModeMayBeRemovedByTheListsOwnReference) {
    manager->addMode(makeMode("sepia", 0));
    manager->removeMode(manager->modes().front());
    EXPECT_TRUE(manager->modes().empty());
}

TEST_F(ManagerList, AModeMayBeAddedByTheListsOwnReference) {
    manager->addMode(makeMode("sepia", 0));
    manager->addMode(manager->modes().front());
    EXPECT_EQ(identifiersOf(*manager), (Names{"sepia", "sepia"}));
}

TEST_F(ManagerList, TheListIsNotLockedWhileAModeEnds) {
    class Ending : public zel::ZelStyleManagerMode {
    public:
        std::function<void()> last;
        Ending() = default;
        Ending(const Ending&) = delete;
        Ending& operator=(const Ending&) = delete;
        ~Ending() override { last(); }
    };
    int ended = 0;
    {
        const auto ending = zel::alloc<Ending>();
        ending->last = [&] {
            runElsewhere([&] { manager->addMode(makeMode("ink", 1)); });
            ++ended;
        };
        manager->addMode(ending->initWithIdentifier("sepia", 0, ""));
    }
    manager->removeMode(manager->modes().front());
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(identifiersOf(*manager), Names{"ink"});
}

TEST_F(ManagerList, RemovingTheLastModeAppliesNothing) {
    makeSystemDark();
    manager->addMode(makeMode("follow-system", 0));
    ASSERT_TRUE(isDark());
    manager->removeMode(manager->modes().front());
    EXPECT_TRUE(isDark());
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_EQ(ZelStyleManagerInternals::shouldBeActiveMode(*manager), nullptr);
}

TEST_F(ManagerList, AddingNilRaisesChangesNothingAndLeavesTheListFree) {
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    domain->setCurrentScheme(domain->lightScheme());
    listen();
    EXPECT_THROW(manager->addMode(nullptr), zel::ZelInvalidArgument);
    EXPECT_EQ(manager->modes().size(), 3U);
    EXPECT_TRUE(recorder.take().empty()); // not even applied again
    runElsewhere([&] { manager->addMode(makeMode("sepia", 5)); });
    EXPECT_EQ(identifiersOf(*manager),
              (Names{"always-light", "sepia", "always-dark", "follow-system"}));
}

TEST_F(ManagerList, RemovingNilRemovesNothingAndAppliesTheChosenMode) {
    addStandardModes();
    manager->setActiveModeIdentifier("always-dark");
    domain->setCurrentScheme(domain->lightScheme());
    listen();
    EXPECT_NO_THROW(manager->removeMode(nullptr));
    EXPECT_EQ(manager->modes().size(), 3U);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(ManagerList, TheListIsNotLockedWhileHandlersRun) {
    addStandardModes();
    std::vector<std::shared_ptr<zel::ZelStyleManagerMode>> seen;
    domain->registerChangeHandler(
        recorder.handler("owner",
                         [&] {
                             runElsewhere([&] {
                                 EXPECT_EQ(manager->activeMode(), nullptr);
                                 seen.push_back(
                                     ZelStyleManagerInternals::shouldBeActiveMode(*manager));
                             });
                         }),
        owner);
    seen.clear();
    manager->setActiveModeIdentifier("always-dark");
    ASSERT_EQ(seen.size(), 1U);
    const auto chosen = seen[0];
    EXPECT_EQ(chosen->identifier(), "always-dark");
    manager->removeMode(chosen);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[1]->identifier(), "always-light");
    manager->addMode(chosen);
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[2], chosen);
}

TEST_F(ManagerList, AHandlersExceptionPassesAndEveryLockIsFree) {
    addStandardModes();
    bool raise = false;
    domain->registerChangeHandler(recorder.handler("owner",
                                                   [&] {
                                                       if (raise) {
                                                           throw std::runtime_error("no");
                                                       }
                                                   }),
                                  owner);
    raise = true;
    EXPECT_THROW(manager->setActiveModeIdentifier("always-dark"), std::runtime_error);
    raise = false;
    EXPECT_EQ(stored(), text("always-dark"));
    runElsewhere([&] {
        manager->addMode(makeMode("sepia", 5));
        manager->setActiveModeIdentifier("always-light");
    });
    EXPECT_EQ(manager->modes().size(), 4U);
    EXPECT_TRUE(isLight());
}

TEST_F(ManagerList, ThreadsMayAddAndRemoveModesAtTheSameTime) {
    manager->addMode(makeMode("always-dark", 0));
    const auto churn = [&](const std::string& name) {
        for (int i = 0; i < 100; ++i) {
            const auto mode = makeMode(name, 7, name);
            manager->addMode(mode);
            (void)ZelStyleManagerInternals::shouldBeActiveMode(*manager);
            manager->removeMode(mode);
        }
        manager->addMode(makeMode(name, 7, name));
    };
    runAtOnce({[&] { churn("b"); }, [&] { churn("c"); }, [&] { churn("a"); }});
    EXPECT_EQ(identifiersOf(*manager), (Names{"always-dark", "a", "b", "c"}));
}

} // namespace
