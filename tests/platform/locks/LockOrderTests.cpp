// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/DeliveryGate.h"
#include "platform/locks/Guarded.h"
#include "platform/locks/RecursiveLock.h"
#include "tests/support/Counts.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string>
#include <thread>
#include <utility>

using zel::DeliveryGate;
using zel::Guarded;
using zel::LockRank;
using zel::LockRule;
using zel::lockRules;
using zel::RecursiveGuard;
using zel::RecursiveLock;

// Named in what the process prints at its end; that takes external functions.
[[gnu::noinline]] RecursiveGuard takeTheOuterOne(RecursiveLock& lock) {
    return RecursiveGuard(lock);
}
[[gnu::noinline]] RecursiveGuard takeTheInnerOne(RecursiveLock& lock) {
    return RecursiveGuard(lock);
}

namespace zeltest {
namespace {

/// Locks that another thread has taken before, as those of objects that are in use.
struct UsedLock : RecursiveLock {
    explicit UsedLock(LockRank rank) : RecursiveLock(rank) {
        runElsewhere([this] { const RecursiveGuard guard(*this); });
    }
};

void takeBoth(RecursiveLock& outer, RecursiveLock& inner) {
    const RecursiveGuard outerGuard = takeTheOuterOne(outer);
    const RecursiveGuard innerGuard = takeTheInnerOne(inner);
}

class LockOrderDeathTests : public testing::Test {
protected:
    LockOrderDeathTests() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        writeCountsAtAbort();
    }

    UsedLock registry{LockRank::DomainRegistry};
    UsedLock modes{LockRank::ModeList};
    UsedLock update{LockRank::StyleUpdate};
    UsedLock followers{LockRank::UpdateFollowers};
    UsedLock table{LockRank::HandlerTable};
    UsedLock otherTable{LockRank::HandlerTable};
    UsedLock schemes{LockRank::Schemes};
    UsedLock otherSchemes{LockRank::Schemes};
    UsedLock styles{LockRank::SchemeStyles};
    UsedLock child{LockRank::StyleValues};
    UsedLock parent{LockRank::StyleValues};
    UsedLock grandparent{LockRank::StyleValues};
    UsedLock center{LockRank::Notifications};
};

TEST_F(LockOrderDeathTests, ASchemesTableThenItsDomainsEndsTheProcessWithBothNamesAndBothStacks) {
    EXPECT_DEATH(takeBoth(styles, schemes),
                 "\"schemes of a domain\" \\(0x[0-9a-f]+\\) is taken inside "
                 "\"styles of a scheme\" \\(0x[0-9a-f]+\\)\n"
                 "the rule: handlers resolve styles with their table locked\n"
                 "of the lock that is held: a domain looks into its schemes with its own lock "
                 "held\n"
                 "\"styles of a scheme\" \\(0x[0-9a-f]+\\) was taken here:\n"
                 "(.*\n)*.*takeTheOuterOne.*\n(.*\n)*"
                 "\"schemes of a domain\" \\(0x[0-9a-f]+\\) is taken here:\n"
                 "(.*\n)*.*takeTheInnerOne.*\n");
}

TEST_F(LockOrderDeathTests, LocksInOrderAreTakenAsOftenAsOneLikes) {
    for (int i = 0; i < 3; ++i) {
        const RecursiveGuard tableGuard(table);
        const RecursiveGuard schemesGuard(schemes);
        const RecursiveGuard stylesGuard(styles);
        const RecursiveGuard again(schemes); // held already
        const RecursiveGuard tableAgain(table);
        const RecursiveGuard valuesGuard(child);
        const RecursiveGuard centerGuard(center);
    }
    takeBoth(table, schemes);
}

TEST_F(LockOrderDeathTests, AHandlerTableInsideADomainsSchemesEndsTheProcess) {
    EXPECT_DEATH(takeBoth(schemes, table),
                 "\"table of handlers\" .* is taken inside \"schemes of a domain\"");
    EXPECT_DEATH(
        {
            const DeliveryGate gate;
            takeBoth(schemes, table);
        },
        "\"table of handlers\" .* is taken inside \"schemes of a domain\"");
}

TEST_F(LockOrderDeathTests, TheGateInsideAnyLockEndsTheProcess) {
    for (const LockRule& rule : lockRules) {
        if (rule.rank == LockRank::DeliveryGate) {
            continue;
        }
        RecursiveLock outer(rule.rank);
        EXPECT_DEATH(
            {
                const RecursiveGuard guard = takeTheOuterOne(outer);
                const DeliveryGate gate;
            },
            "\"delivery gate\" .* is taken inside \"" + std::string(rule.name) +
                "\" .*\nthe rule: whatever calls back with another "
                "lock held takes the gate before that lock\n.*was taken "
                "here:\n(.*\n)*.*takeTheOuterOne");
    }
    const DeliveryGate gate;
    const RecursiveGuard guard(table);
    const DeliveryGate again; // held already
}

TEST_F(LockOrderDeathTests, LocksThatCallBackAreTakenEitherWayRoundBehindTheGateAlone) {
    const DeliveryGate gate;
    takeBoth(update, table);
    takeBoth(table, update);
    takeBoth(table, otherTable);
    takeBoth(otherTable, table);
    takeBoth(table, registry);
    takeBoth(registry, table);
}

TEST_F(LockOrderDeathTests, LocksThatCallBackInsideEachOtherOutsideTheGateEndTheProcess) {
    EXPECT_DEATH(takeBoth(table, update),
                 "\"update of a style\" .* is taken inside \"table of handlers\"");
    EXPECT_DEATH(takeBoth(update, table),
                 "\"table of handlers\" .* is taken inside \"update of a style\"");
    EXPECT_DEATH(takeBoth(table, otherTable),
                 "\"table of handlers\" .* is taken inside \"table of handlers\"");
    EXPECT_DEATH(takeBoth(registry, table),
                 "\"table of handlers\" .* is taken inside \"registry of domains\"");
}

TEST_F(LockOrderDeathTests, AStylesFollowersStandInsideItsUpdate) {
    takeBoth(update, followers);
    EXPECT_DEATH(takeBoth(followers, update),
                 "\"update of a style\" .* is taken inside \"followers of a style\"");
}

TEST_F(LockOrderDeathTests, ALockThatNobodyHasTakenYetIsTakenInsideTheRegistry) {
    RecursiveLock fresh(LockRank::HandlerTable);
    takeBoth(registry, fresh);
    EXPECT_DEATH(takeBoth(registry, fresh),
                 "\"table of handlers\" .* is taken inside \"registry of domains\"");
}

TEST_F(LockOrderDeathTests, TwoPrivateLocksOfOneRankEndTheProcess) {
    EXPECT_DEATH(takeBoth(schemes, otherSchemes),
                 "\"schemes of a domain\" .* is taken inside \"schemes of a domain\".*\n"
                 "the rule: handlers resolve styles with their table locked\n"
                 "\"schemes of a domain\" .* was taken here:");
}

TEST_F(LockOrderDeathTests, AParentsValuesThenItsChildsEndTheProcessWithAllThreeStacks) {
    runElsewhere([this] { takeBoth(child, parent); });
    EXPECT_DEATH(
        {
            takeBoth(child, parent);
            const RecursiveGuard guard(parent);
            const RecursiveGuard childGuard = takeTheInnerOne(child);
        },
        "\"values of a style\" .* is taken inside \"values of a style\" (.*\n)*"
        ".* was taken here:\n(.*\n)*"
        "the two were taken the other way round here:\n(.*\n)*.*takeTheInnerOne(.*\n)*"
        "\"values of a style\" .* is taken here:\n(.*\n)*.*takeTheInnerOne");
}

TEST_F(LockOrderDeathTests, AnOrderAmongThreeStylesIsFollowed) {
    takeBoth(child, parent);
    takeBoth(parent, grandparent);
    EXPECT_DEATH(takeBoth(grandparent, child), "taken the other way round here");
}

TEST_F(LockOrderDeathTests, AStyleWithAnotherParentHasAnotherOrder) {
    takeBoth(child, parent);
    child.forgetOrder();
    takeBoth(parent, child);
    EXPECT_DEATH(takeBoth(child, parent), "taken the other way round here");
}

TEST_F(LockOrderDeathTests, ALockThatEndedIsForgotten) {
    std::optional<RecursiveLock> passing(std::in_place, LockRank::StyleValues);
    takeBoth(*passing, parent);
    takeBoth(child, *passing);
    passing.reset();
    passing.emplace(LockRank::StyleValues); // at the same place
    takeBoth(parent, *passing);
    takeBoth(*passing, child);
}

TEST_F(LockOrderDeathTests, LocksReleasedInAnyOrderAreHeldNoMore) {
    std::optional<RecursiveGuard> tableGuard(table);
    std::optional<RecursiveGuard> stylesGuard(styles);
    tableGuard.reset();
    EXPECT_DEATH(takeBoth(schemes, schemes), "\"schemes of a domain\" .* is taken inside");
    stylesGuard.reset();
    takeBoth(schemes, styles);
    const DeliveryGate gate;
}

TEST_F(LockOrderDeathTests, ALockThatIsOnlyTriedMayStandAnywhereAndCountsAsHeld) {
    const RecursiveGuard stylesGuard(styles);
    RecursiveGuard schemesGuard(schemes, std::try_to_lock);
    EXPECT_TRUE(schemesGuard.owns_lock());
    EXPECT_DEATH(takeBoth(table, table), "\"table of handlers\" .* is taken inside");
}

TEST_F(LockOrderDeathTests, MoreLocksThanAnybodyHoldsAreKeptApart) {
    std::deque<RecursiveLock> many;
    std::deque<RecursiveGuard> guards;
    for (int i = 0; i < 1000; ++i) {
        guards.emplace_back(many.emplace_back(LockRank::StyleValues));
    }
    const RecursiveGuard again(many[500]);
    EXPECT_DEATH(RecursiveGuard{schemes}, "\"schemes of a domain\" .* is taken inside");
    while (!guards.empty()) {
        guards.pop_front();
    }
    const RecursiveGuard stillHeld(many[500]);
    EXPECT_DEATH(RecursiveGuard{schemes}, "\"schemes of a domain\" .* is taken inside");
}

TEST_F(LockOrderDeathTests, TheLockThatIsInTheWayIsFoundBelowOthersAndBesideGaps) {
    const RecursiveGuard schemesGuard = takeTheOuterOne(schemes);
    std::optional<RecursiveGuard> stylesGuard(styles);
    const RecursiveGuard valuesGuard(child);
    stylesGuard.reset();
    EXPECT_DEATH(RecursiveGuard{table},
                 "\"table of handlers\" .* is taken inside \"schemes of a domain\"(.*\n)*"
                 "\"schemes of a domain\" .* was taken here:\n(.*\n)*.*takeTheOuterOne");
}

TEST_F(LockOrderDeathTests, ALockReleasedByAThreadThatDoesNotHoldItEndsTheProcess) {
    const RecursiveGuard guard(schemes);
    EXPECT_DEATH(schemes.unlock();
                 schemes.unlock(),
                 "released by a thread that doesn't hold it: \"schemes of a domain\"");
    EXPECT_DEATH(std::thread([this] { schemes.unlock(); }).join(),
                 "released by a thread that doesn't hold it: \"schemes of a domain\"");
}

TEST_F(LockOrderDeathTests, WhatALockGuardsIsUsedByItsHolderAlone) {
    const std::string message = "what a lock guards is used by a thread that doesn't hold it: "
                                "\"schemes of a domain\"";
    Guarded<int> field;
    EXPECT_DEATH(field.with(schemes) = 1, message);
    {
        const RecursiveGuard guard(schemes);
        field.with(schemes) = 7;
        EXPECT_EQ(std::as_const(field).with(schemes), 7);
        EXPECT_DEATH(std::thread([&] { field.with(schemes) = 1; }).join(), message);
    }
    EXPECT_DEATH((void)std::as_const(field).with(schemes), message);
    EXPECT_EQ(field.withoutLock(), 7);
}

} // namespace
} // namespace zeltest
