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

    UpdateFailureTests() {
        domain->registerChangeHandler([this](auto&&...) { ++delivered; }, owner);
        delivered = 0;
        (void)main->effectiveValues();
    }
    void observe(std::function<void()> doing) {
        main->addStyleUpdateObserver([doing = std::move(doing)](auto&&...) { doing(); }, owner,
                                     false);
    }
    ZelStyle::UpdateObserver count() {
        return [this](auto&&...) { ++observed; };
    }
    void update() { main->updateStyleWithChanges(nullptr); }

    /// An update that raises in its walk has moved the counter, dropped what was merged, and told
    /// the domain nothing.
    void expectTheWalkRaises() {
        EXPECT_THROW(update(), ZelEnumerationMutation);
        EXPECT_EQ(main->seed(), 1U);
        EXPECT_FALSE(ZelStyleInternals::hasComputedValues(*main));
        EXPECT_EQ(delivered, 0);
        EXPECT_TRUE(everyLockIsFree(main));
    }
};

TEST_F(UpdateFailureTests, AnObserverAddedDuringTheWalkRaises) {
    observe([&] { main->addStyleUpdateObserver(count(), other, false); });
    expectTheWalkRaises();
}

TEST_F(UpdateFailureTests, AnObserverReplacedDuringTheWalkRaises) {
    main->addStyleUpdateObserver(count(), other, false);
    observe([&] { main->addStyleUpdateObserver(count(), other, false); });
    expectTheWalkRaises();
}

TEST_F(UpdateFailureTests, AnObserverThatReplacesItselfRaises) {
    observe([&] { main->addStyleUpdateObserver(count(), owner, false); });
    expectTheWalkRaises();
    EXPECT_NO_THROW(update());
    EXPECT_EQ(observed, 1);
}

TEST_F(UpdateFailureTests, AnObserverRemovedDuringTheWalkRaisesAndIsNotCalled) {
    observe([&] { main->removeStyleUpdateObserverWithOwner(other); });
    main->addStyleUpdateObserver(count(), other, false);
    expectTheWalkRaises();
    EXPECT_EQ(observed, 0);
}

TEST_F(UpdateFailureTests, AChangeMadeByTheLastObserverRaisesToo) {
    main->addStyleUpdateObserver(count(), other, false);
    observe([&] { main->removeStyleUpdateObserverWithOwner(owner); });
    expectTheWalkRaises();
    EXPECT_EQ(observed, 1);
    EXPECT_NO_THROW(update());
    EXPECT_EQ(observed, 2) << "the removal stands";
    EXPECT_EQ(delivered, 1);
}

TEST_F(UpdateFailureTests, RemovingAnOwnerThatHasNoObserverIsNoChange) {
    observe([&] { main->removeStyleUpdateObserverWithOwner(other); });
    EXPECT_NO_THROW(update());
    EXPECT_EQ(delivered, 1);
}

TEST_F(UpdateFailureTests, AnInheritedChildMadeDuringTheWalkRaises) {
    Style child;
    observe([&] { child = main->inheritedStyleWithChanges([](auto&&...) {}, "child", nullptr); });
    expectTheWalkRaises();
}

TEST_F(UpdateFailureTests, AChildsUpdateThatChangesItsParentsObserversRaisesInTheParentsWalk) {
    bool change = false;
    const auto child = main->inheritedStyleWithChanges(
        [&](auto&&...) {
            if (change) {
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
}

TEST_F(UpdateFailureTests, ChangesThatRaiseCancelTheUpdateAndLeaveEveryLockFree) {
    observe([&] { ++observed; });
    EXPECT_THROW(main->updateStyleWithChanges([](const Style&) -> bool { throw Failure(); }),
                 Failure);
    EXPECT_EQ(main->seed(), 0U);
    EXPECT_TRUE(ZelStyleInternals::hasComputedValues(*main));
    EXPECT_EQ(observed, 0);
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
}

TEST_F(UpdateFailureTests, AnObserverThatRaisesEndsTheUpdateAndLeavesEveryLockFree) {
    observe([] { throw Failure(); });
    main->addStyleUpdateObserver(count(), other, false);
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_EQ(observed, 0);
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(everyLockIsFree(main));
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
    update();
    EXPECT_EQ(observed, 2);
}

TEST_F(UpdateFailureTests, AHandlerThatRaisesLeavesTheStylesLocksFree) {
    domain->registerChangeHandler(
        [](const std::shared_ptr<NSObject>&, const Style&, ZelStyleChangeEvent event) {
            if (event != ZelStyleChangeEventInitial) {
                throw Failure();
            }
        },
        other);
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(main->seed(), 1U);
    EXPECT_TRUE(everyLockIsFree(main));
}

TEST_F(UpdateFailureTests, ADescendantsObserverThatRaisesLeavesTheWholeLinesLocksFree) {
    const auto nothing = [](auto&&...) {};
    const auto child = main->inheritedStyleWithChanges(nothing, "child", nullptr);
    const auto grandchild = child->inheritedStyleWithChanges(nothing, "grandchild", nullptr);
    grandchild->addStyleUpdateObserver([](auto&&...) { throw Failure(); }, other, false);
    EXPECT_THROW(update(), Failure);
    EXPECT_EQ(grandchild->seed(), 3U);
    EXPECT_EQ(delivered, 0);
    for (const Style& each : {main, child, grandchild}) {
        EXPECT_TRUE(everyLockIsFree(each));
    }
}

TEST_F(UpdateFailureTests, InheritedChangesThatRaiseLeaveEveryLockFreeAndNoChildBehind) {
    EXPECT_THROW(
        (void)main->inheritedStyleWithChanges([](const Style&, const Style&) { throw Failure(); },
                                              "child", domain->defaultScheme()),
        Failure);
    EXPECT_TRUE(everyLockIsFree(main));
    EXPECT_EQ(domain->defaultScheme()->styleForIdentifier("child"), nullptr);
    EXPECT_NO_THROW(update()) << "its link has ended with it";
}

TEST_F(UpdateFailureTests, InheritedChangesThatRaiseLaterStopTheParentsUpdate) {
    bool fail = false;
    const auto child = main->inheritedStyleWithChanges(
        [&](const Style&, const Style&) {
            if (fail) {
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
}

} // namespace
} // namespace zeltest
