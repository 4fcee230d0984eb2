// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/AtEnd.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class HandlerLifetimeTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    std::shared_ptr<Plain> owner = makePlain();

    /// Registers a handler that captures something, and answers how to watch that.
    std::weak_ptr<int> capture(const std::shared_ptr<NSObject>& forOwner) {
        auto captured = std::make_shared<int>();
        const std::weak_ptr<int> watched = captured;
        domain->registerChangeHandler(
            [kept = std::move(captured)](const auto&, const auto&, auto) {}, forOwner);
        return watched;
    }
    void forceAll() { domain->notifyForStyleChangeOf(nullptr, {.force = true}); }
};

TEST_F(HandlerLifetimeTests, AHandlerAndWhatItCapturedLiveAsLongAsTheOwner) {
    const auto watched = capture(owner);
    forceAll();
    EXPECT_FALSE(watched.expired());
    owner.reset();
    EXPECT_TRUE(watched.expired()); // without any notification in between
    EXPECT_EQ(ownerCount(*domain), 0U);
}

TEST_F(HandlerLifetimeTests, EveryHandlerOfAnOwnerEndsWithIt) {
    const auto first = capture(owner);
    const auto second = capture(owner);
    const auto third = capture(owner);
    owner.reset();
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(second.expired());
    EXPECT_TRUE(third.expired());
}

TEST_F(HandlerLifetimeTests, UnregisteringLetsGoAtOnce) {
    const auto first = capture(owner);
    const auto second = capture(owner);
    const auto other = makePlain();
    const auto kept = capture(other);
    domain->unregisterChangeHandlersWithOwner(owner);
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(second.expired());
    EXPECT_FALSE(kept.expired());
}

TEST_F(HandlerLifetimeTests, OtherDomainsKeepTheirHandlersOfTheOwner) {
    const auto watched = capture(owner);
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    auto captured = std::make_shared<int>();
    const std::weak_ptr<int> otherWatched = captured;
    other->registerChangeHandler([kept = std::move(captured)](const auto&, const auto&, auto) {},
                                 owner);
    domain->unregisterChangeHandlersWithOwner(owner);
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(otherWatched.expired());
    owner.reset();
    EXPECT_TRUE(otherWatched.expired());
}

TEST_F(HandlerLifetimeTests, UnregisteringAnotherOwnerInAWalkLetsGoAtOnce) {
    std::weak_ptr<int> watched;
    const auto other = makePlain();
    bool released = false;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1) {
                domain->unregisterChangeHandlersWithOwner(other);
                released = watched.expired();
            }
        },
        owner);
    watched = capture(other);
    forceAll();
    EXPECT_TRUE(released);
}

TEST_F(HandlerLifetimeTests, AnOwnerThatEndsInAWalkLetsGoAtOnce) {
    std::weak_ptr<int> watched;
    auto other = makePlain();
    bool released = false;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1) {
                other.reset();
                released = watched.expired();
            }
        },
        owner);
    watched = capture(other);
    forceAll();
    EXPECT_TRUE(released);
}

TEST_F(HandlerLifetimeTests, ARunningHandlerKeepsWhatItCapturedUntilItReturns) {
    auto captured = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = captured;
    int seenAfterwards = 0;
    bool goneWhenTheNextIsCalled = false;
    domain->registerChangeHandler(
        [this, kept = std::move(captured), &seenAfterwards](const auto&, const auto&,
                                                            ZelStyleChangeEvent event) {
            if (event == 1) {
                domain->unregisterChangeHandlersWithOwner(owner);
                seenAfterwards = *kept;
            }
        },
        owner);
    const auto next = makePlain();
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) { goneWhenTheNextIsCalled = watched.expired(); }, next);
    EXPECT_FALSE(goneWhenTheNextIsCalled);
    forceAll();
    EXPECT_EQ(seenAfterwards, 7);
    EXPECT_TRUE(goneWhenTheNextIsCalled);
    EXPECT_TRUE(watched.expired());
}

TEST_F(HandlerLifetimeTests, TheOwnersOtherHandlersStayUntilTheRunningOneReturns) {
    const auto before = capture(owner);
    bool stayed = false;
    std::weak_ptr<int> after;
    bool goneWhenTheNextIsCalled = false;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1) {
                domain->unregisterChangeHandlersWithOwner(owner);
                stayed = !before.expired() && !after.expired();
            }
        },
        owner);
    after = capture(owner);
    const auto next = makePlain();
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) {
            goneWhenTheNextIsCalled = before.expired() && after.expired();
        },
        next);
    EXPECT_FALSE(goneWhenTheNextIsCalled);
    forceAll();
    EXPECT_TRUE(stayed);
    EXPECT_TRUE(goneWhenTheNextIsCalled);
}

TEST_F(HandlerLifetimeTests, AHandlerThatUnregistersAtItsRegistrationIsLetGoWhenThatReturns) {
    auto captured = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = captured;
    int seenAfterwards = 0;
    domain->registerChangeHandler(
        [this, kept = std::move(captured), &seenAfterwards](const auto&, const auto&, auto) {
            domain->unregisterChangeHandlersWithOwner(owner);
            seenAfterwards = *kept;
        },
        owner);
    EXPECT_EQ(seenAfterwards, 7);
    EXPECT_TRUE(watched.expired());
}

TEST_F(HandlerLifetimeTests, AHandlerOfANestedWalkStaysUntilTheOuterCallOfItReturns) {
    auto captured = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = captured;
    int depth = 0;
    std::vector<int> seen;
    domain->registerChangeHandler(
        [&, kept = std::move(captured)](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1 && ++depth == 1) {
                forceAll();
                seen.push_back(*kept);
            } else if (event == 1) {
                domain->unregisterChangeHandlersWithOwner(owner);
                seen.push_back(*kept);
            }
        },
        owner);
    forceAll();
    EXPECT_EQ(seen, (std::vector{7, 7}));
    EXPECT_TRUE(watched.expired());
}

TEST_F(HandlerLifetimeTests, ACaptureMayOwnAnotherOwner) {
    auto other = makePlain();
    const auto watched = capture(other);
    domain->registerChangeHandler([kept = other](const auto&, const auto&, auto) {}, owner);
    other.reset();
    EXPECT_FALSE(watched.expired());
    owner.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(ownerCount(*domain), 0U);
}

TEST_F(HandlerLifetimeTests, CapturesEndWithNoLockHeldUnlessADeliveryIsOn) {
    int ended = 0;
    int endedLocked = 0;
    const auto handler = [&] {
        auto atEnd = std::make_shared<AtEnd>([&] {
            ++ended;
            endedLocked += stylingLockIsFree() ? 0 : 1;
        });
        return [kept = std::move(atEnd)](const auto&, const auto&, auto) {};
    };
    domain->registerChangeHandler(handler(), owner);
    domain->unregisterChangeHandlersWithOwner(owner);
    EXPECT_EQ(ended, 1);
    domain->registerChangeHandler(handler(), owner);
    domain->registerChangeHandler(handler(), owner);
    owner.reset();
    EXPECT_EQ(ended, 3);
    EXPECT_EQ(endedLocked, 0);
}

TEST_F(HandlerLifetimeTests, ACaptureThatEndsMayChangeTheTable) {
    Recorder recorder;
    const auto other = makePlain();
    auto atEnd = std::make_shared<AtEnd>(
        [&] { domain->registerChangeHandler(recorder.handler("successor"), other); });
    domain->registerChangeHandler([kept = std::move(atEnd)](const auto&, const auto&, auto) {},
                                  owner);
    owner.reset();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"successor", plain, 0}}));
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"successor"}));
    domain->unregisterChangeHandlersWithOwner(other);
}

TEST_F(HandlerLifetimeTests, AHandlersOwnerStaysThroughTheCallThatLetsItGo) {
    std::shared_ptr<NSObject> letGo = makePlain();
    bool stayed = false;
    domain->registerChangeHandler(
        [&](const std::shared_ptr<NSObject>& given, const auto&, auto) {
            letGo.reset();
            stayed = given != nullptr && given->lastZelStyle().isNil();
        },
        letGo);
    EXPECT_TRUE(stayed);
}

TEST_F(HandlerLifetimeTests, HandlerObjectsAreHeldWeakly) {
    const std::weak_ptr<Plain> watched = owner;
    domain->registerChangeHandler(owner);
    EXPECT_EQ(objectCount(*domain), 1U);
    owner.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(objectCount(*domain), 0U);
    forceAll();
}

TEST_F(HandlerLifetimeTests, ANewOwnerAtAnEndedOnesAddressHasNoHandlers) {
    Recorder recorder;
    for (int i = 0; i < 100; ++i) {
        auto passing = makePlain();
        domain->registerChangeHandler(recorder.handler("passing"), passing);
        passing.reset();
        passing = makePlain(); // often at the same address
        recorder.take();
        forceAll();
        EXPECT_EQ(recorder.take(), StyleCalls{});
    }
}

} // namespace
} // namespace zeltest
