// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

struct Failure : std::runtime_error {
    Failure() : std::runtime_error("a callback failed") {}
};

class UpdateFailureTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    const Style main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<NSObject> owner = makePlain();
    const std::shared_ptr<NSObject> other = makePlain();
    int delivered = 0;
    int observed = 0;
    bool hasActed = false;

    UpdateFailureTests() {
        domain->registerChangeHandler([this](auto&&...) { ++delivered; }, owner);
        delivered = 0;
        (void)main->effectiveValues();
    }
    /// Has the owner's observer do something when it is called for the first time.
    void observe(std::function<void()> doing) {
        main->addStyleUpdateObserver(
            [this, doing = std::move(doing)](auto&&...) {
                if (!std::exchange(hasActed, true)) {
                    doing();
                }
            },
            owner, false);
    }
    ZelStyle::UpdateObserver count() {
        return [this](auto&&...) { ++observed; };
    }
    void update() { main->updateStyleWithChanges(nullptr); }

    /// An update that raises in its walk has moved the counter, dropped what was merged, and told
    /// the domain nothing; the next one calls so many of the counting observers, then the domain.
    void expectTheWalkRaises(int nextObserved) {
        EXPECT_THROW(update(), ZelEnumerationMutation);
        EXPECT_EQ(main->seed(), 1U);
        EXPECT_FALSE(hasComputedValues(main));
        EXPECT_EQ(delivered, 0);
        EXPECT_TRUE(everyLockIsFree(main));
        expectTheNextUpdateReachesEverybody(nextObserved);
    }
    /// An update on another thread, and a notification that is no update's.
    void expectTheNextUpdateReachesEverybody(int nextObserved) {
        const auto formerSeed = main->seed();
        observed = delivered = 0;
        runElsewhere([&] {
            main->updateStyleWithChanges([](const Style& changed) {
                changed->setValue(gray(0.75), "paperColor");
                return true;
            });
        });
        EXPECT_EQ(main->seed(), formerSeed + 1);
        EXPECT_EQ(main->effectiveValueForAttribute("paperColor"), gray(0.75));
        EXPECT_EQ(observed, nextObserved);
        EXPECT_EQ(delivered, 1);
        runElsewhere([&] { domain->notifyForStyleChangeOf(nullptr, {.force = true}); });
        EXPECT_EQ(delivered, 2);
    }
};

TEST_F(UpdateFailureTests, AnObserverAddedDuringTheWalkRaises) {
    observe([&] { main->addStyleUpdateObserver(count(), other, false); });
    expectTheWalkRaises(1);
}

TEST_F(UpdateFailureTests, AnObserverThatReplacesItselfRaises) {
    observe([&] { main->addStyleUpdateObserver(count(), owner, false); });
    expectTheWalkRaises(1);
}

TEST_F(UpdateFailureTests, AnObserverRemovedDuringTheWalkRaisesAndIsNotCalled) {
    observe([&] { main->removeStyleUpdateObserverWithOwner(other); });
    main->addStyleUpdateObserver(count(), other, false);
    expectTheWalkRaises(0);
}

TEST_F(UpdateFailureTests, AChangeMadeByTheLastObserverRaisesToo) {
    int removed = 0;
    main->addStyleUpdateObserver(count(), other, false);
    main->addStyleUpdateObserver(
        [&](auto&&...) {
            ++removed;
            main->removeStyleUpdateObserverWithOwner(owner);
        },
        owner, false);
    expectTheWalkRaises(1);
    EXPECT_EQ(removed, 1) << "the removal stands";
}

TEST_F(UpdateFailureTests, RemovingAnOwnerThatHasNoObserverIsNoChange) {
    observe([&] { main->removeStyleUpdateObserverWithOwner(other); });
    EXPECT_NO_THROW(update());
    EXPECT_EQ(delivered, 1);
}

TEST_F(UpdateFailureTests, AnInheritedChildMadeDuringTheWalkRaises) {
    Style child;
    observe([&] { child = main->inheritedStyleWithChanges([](auto&&...) {}, "child", nullptr); });
    expectTheWalkRaises(0);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(localCounter(child), 1U) << "it follows from the next update on";
}

TEST_F(UpdateFailureTests, AChildsUpdateThatChangesItsParentsObserversRaisesInTheParentsWalk) {
    bool change = false;
    const auto child = main->inheritedStyleWithChanges(
        [&](auto&&...) {
            if (std::exchange(change, false)) {
                main->addStyleUpdateObserver(count(), other, false);
            }
        },
        "child", domain->defaultScheme());
    change = true;
    EXPECT_THROW(update(), ZelEnumerationMutation);
    EXPECT_EQ(localCounter(child), 1U) << "the child's own update was finished";
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
    EXPECT_TRUE(everyLockIsFree(child));
    expectTheNextUpdateReachesEverybody(1);
    EXPECT_EQ(localCounter(child), 2U);
}

TEST_F(UpdateFailureTests, ChangesThatRaiseCancelTheUpdateAndTheNextOneReachesEverybody) {
    main->addStyleUpdateObserver(count(), other, false);
    EXPECT_THROW(main->updateStyleWithChanges([](const Style& changed) -> bool {
        changed->setValue(gray(0.25), "inkColor");
        throw Failure();
    }),
                 Failure);
    EXPECT_EQ(main->seed(), 0U);
    EXPECT_EQ(main->effectiveValueForAttribute("inkColor"), gray(0.25)) << "as it was written";
    EXPECT_EQ(observed, 0);
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
    expectTheNextUpdateReachesEverybody(1);
}

TEST_F(UpdateFailureTests, ChangesThatRaiseWithoutAWriteLeaveWhatWasMerged) {
    EXPECT_THROW(main->updateStyleWithChanges([](const Style&) -> bool { throw Failure(); }),
                 Failure);
    EXPECT_TRUE(hasComputedValues(main));
}

TEST_F(UpdateFailureTests, AnObserverThatRaisesEndsTheUpdateAndTheNextOneReachesEverybody) {
    observe([] { throw Failure(); });
    main->addStyleUpdateObserver(count(), other, false);
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_FALSE(hasComputedValues(main));
    EXPECT_EQ(observed, 0);
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
    expectTheNextUpdateReachesEverybody(1);
}

TEST_F(UpdateFailureTests, AnInitialCallThatRaisesLeavesEveryLockFreeAndTheObserverInPlace) {
    EXPECT_THROW(main->addStyleUpdateObserver(
                     [&](const std::shared_ptr<NSObject>&, const Style&, bool initial) {
                         ++observed;
                         if (initial) {
                             throw Failure();
                         }
                     },
                     owner, true),
                 Failure);
    EXPECT_TRUE(everyLockIsFree(main));
    EXPECT_EQ(observed, 1);
    expectTheNextUpdateReachesEverybody(1);
}

TEST_F(UpdateFailureTests, ADescendantsObserverThatRaisesLeavesTheWholeLinesLocksFree) {
    const auto nothing = [](auto&&...) {};
    const auto child = main->inheritedStyleWithChanges(nothing, "child", nullptr);
    const auto grandchild = child->inheritedStyleWithChanges(nothing, "grandchild", nullptr);
    grandchild->addStyleUpdateObserver(
        [&](auto&&...) {
            ++observed;
            if (!std::exchange(hasActed, true)) {
                throw Failure();
            }
        },
        other, false);
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(grandchild->seed(), 3U);
    EXPECT_EQ(delivered, 0);
    for (const Style& each : {main, child, grandchild}) {
        EXPECT_TRUE(everyLockIsFree(each));
    }
    expectTheNextUpdateReachesEverybody(1);
    EXPECT_EQ(grandchild->seed(), 6U);
}

TEST_F(UpdateFailureTests, InheritedChangesThatRaiseLeaveEveryLockFreeAndNoChildBehind) {
    EXPECT_THROW(
        (void)main->inheritedStyleWithChanges([](const Style&, const Style&) { throw Failure(); },
                                              "child", domain->defaultScheme()),
        Failure);
    EXPECT_TRUE(everyLockIsFree(main));
    EXPECT_EQ(domain->defaultScheme()->styleForIdentifier("child"), nullptr);
    expectTheNextUpdateReachesEverybody(0); // the child's link has ended with it
}

TEST_F(UpdateFailureTests, InheritedChangesThatRaiseLaterStopTheParentsUpdate) {
    bool fail = false;
    const auto child = main->inheritedStyleWithChanges(
        [&](const Style&, const Style&) {
            if (std::exchange(fail, false)) {
                throw Failure();
            }
        },
        "child", nullptr);
    fail = true;
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_EQ(localCounter(child), 0U);
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
    EXPECT_TRUE(everyLockIsFree(child));
    expectTheNextUpdateReachesEverybody(0);
    EXPECT_EQ(localCounter(child), 1U);
}

} // namespace
} // namespace zeltest
