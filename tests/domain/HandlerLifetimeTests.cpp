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

    /// Registers a handler that captures something and does something when it is called, with what
    /// it captured, by a notification; answers how to watch what was captured.
    std::weak_ptr<int> capture(const std::shared_ptr<NSObject>& forOwner,
                               std::function<void(const int&)> then = nullptr) {
        auto captured = std::make_shared<int>(7);
        const std::weak_ptr<int> watched = captured;
        domain->registerChangeHandler(
            [kept = std::move(captured), then = std::move(then)](const auto&, const auto&,
                                                                 ZelStyleChangeEvent event) {
                if (then && event == ZelStyleChangeEventChanged) {
                    then(*kept);
                }
            },
            forOwner);
        return watched;
    }
    void forceAll() { domain->notifyForStyleChangeOf(nullptr, {.force = true}); }
};

TEST_F(HandlerLifetimeTests, EveryHandlerAndWhatItCapturedLivesAsLongAsTheOwner) {
    const auto first = capture(owner);
    const auto second = capture(owner);
    const auto third = capture(owner);
    forceAll();
    EXPECT_FALSE(first.expired() || second.expired() || third.expired());
    owner.reset();
    EXPECT_TRUE(first.expired() && second.expired() && third.expired()); // without any notification
    EXPECT_EQ(ownerCount(*domain), 0U);
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

TEST_F(HandlerLifetimeTests, AnotherOwnerThatIsUnregisteredOrEndsInAWalkLetsGoAtOnce) {
    auto other = makePlain();
    std::weak_ptr<int> watched;
    std::vector<bool> released;
    capture(owner, [&](int) {
        released.empty() ? domain->unregisterChangeHandlersWithOwner(other) : other.reset();
        released.push_back(watched.expired());
    });
    for (int round = 0; round < 2; ++round) {
        watched = capture(other);
        forceAll();
    }
    EXPECT_EQ(released, (std::vector{true, true}));
}

TEST_F(HandlerLifetimeTests, ARunningHandlerAndTheOwnersOthersStayUntilItReturns) {
    std::weak_ptr<int> running;
    std::weak_ptr<int> after;
    int seenAfterwards = 0;
    bool stayed = false;
    bool goneWhenTheNextIsCalled = false;
    const auto before = capture(owner);
    running = capture(owner, [&](const int& kept) {
        domain->unregisterChangeHandlersWithOwner(owner);
        stayed = !before.expired() && !running.expired() && !after.expired();
        seenAfterwards = kept;
    });
    after = capture(owner);
    const auto next = makePlain();
    capture(next, [&](int) {
        goneWhenTheNextIsCalled = before.expired() && running.expired() && after.expired();
    });
    forceAll();
    EXPECT_EQ(seenAfterwards, 7);
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
    int depth = 0;
    std::vector<int> seen;
    const auto watched = capture(owner, [&](const int& kept) {
        if (++depth == 1) {
            forceAll();
        } else {
            domain->unregisterChangeHandlersWithOwner(owner);
        }
        seen.push_back(kept);
    });
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
