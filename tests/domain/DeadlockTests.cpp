// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

#include <atomic>
#include <chrono>

namespace zeltest {
namespace {

using namespace zel;

/// Threads that take the same locks in opposite orders; each of these ends the process where they
/// come to wait for each other.
class DeadlockTests : public StylingTests {
protected:
    static constexpr int rounds = 300;
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> cover = addStyle(domain->defaultScheme(), "cover");

    static void update(const std::shared_ptr<ZelStyle>& style) {
        style->updateStyleWithChanges([](const auto&) { return true; });
    }
    /// Does both over and over, each on a thread of its own; neither begins before both are there.
    static void repeatBoth(const std::function<void()>& first,
                           const std::function<void()>& second) {
        std::atomic<int> arrived{0};
        const auto repeat = [&arrived](const std::function<void()>& what) {
            return [&arrived, &what] {
                ++arrived;
                while (arrived < 2) {
                    std::this_thread::yield();
                }
                for (int i = 0; i < rounds; ++i) {
                    what();
                }
            };
        };
        runAtOnce({repeat(first), repeat(second)});
    }
};

TEST_F(DeadlockTests, AnUpdateInProgressAndAHandlerInProgressLetEachOtherFinish) {
    const auto owner = makePlain();
    std::atomic<bool> updating{false};
    std::atomic<bool> notifying{false};
    int updated = 0;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 2) {
                plain->updateStyleWithChanges([&](const auto&) {
                    ++updated;
                    return true;
                });
            }
        },
        owner);
    runAtOnce({[&] {
                   plain->updateStyleWithChanges([&](const auto&) {
                       updating = true; // the style's lock is held: now the other may start
                       while (!notifying) {
                           std::this_thread::yield();
                       }
                       return true; // and now for the table
                   });
               },
               [&] {
                   while (!updating) {
                       std::this_thread::yield();
                   }
                   notifying = true;
                   domain->notifyForStyleChangeOf(
                       nullptr, {.withEvent = static_cast<ZelStyleChangeEvent>(2), .force = true});
               }});
    EXPECT_EQ(updated, 1);
}

TEST_F(DeadlockTests, TwoDomainsWhoseHandlersSwitchEachOtherDoNotWaitForEachOther) {
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    addStyle(other->defaultScheme(), "main");
    const auto owner = makePlain();
    const auto otherOwner = makePlain();
    std::atomic<int> calls{0};
    const auto crossing = [&calls](const std::shared_ptr<ZelStyleDomain>& target) {
        return [&calls, target](const auto&, const auto&, ZelStyleChangeEvent event) {
            ++calls;
            if (event == 2) {
                target->notifyForStyleChangeOf(nullptr, {.force = true});
            }
        };
    };
    domain->registerChangeHandler(crossing(other), owner);
    other->registerChangeHandler(crossing(domain), otherOwner);
    const ZelStyleDelivery delivery{.withEvent = static_cast<ZelStyleChangeEvent>(2),
                                    .force = true};
    repeatBoth([&] { domain->notifyForStyleChangeOf(nullptr, delivery); },
               [&] { other->notifyForStyleChangeOf(nullptr, delivery); });
    EXPECT_EQ(calls, 2 + 4 * rounds);
    domain->unregisterChangeHandlersWithOwner(owner);
    other->unregisterChangeHandlersWithOwner(otherOwner);
}

TEST_F(DeadlockTests, ThreadsMayRegisterAndEndOwnersWhileAnotherNotifies) {
    const auto owner = makePlain();
    int calls = 0;
    domain->registerChangeHandler([&](const auto&, const auto&, auto) { ++calls; }, owner);
    int registered = 0;
    repeatBoth(
        [&] {
            domain->notifyForStyleChangeOf(nullptr, {.force = true});
            update(plain);
        },
        [&, i = 0]() mutable {
            const auto passing = makePlain();
            domain->registerChangeHandler([&](const auto&, const auto&, auto) { ++registered; },
                                          passing);
            domain->registerChangeHandler(passing);
            if (++i % 2 == 0) {
                domain->unregisterChangeHandlersWithOwner(passing);
                domain->unregisterChangeHandler(passing);
            }
        });
    EXPECT_EQ(calls, 1 + 2 * rounds);
    EXPECT_GE(registered, rounds);
    EXPECT_EQ(ownerCount(*domain), 1U);
    EXPECT_EQ(objectCount(*domain), 0U);
}

TEST_F(DeadlockTests, UpdatesOfTwoStylesWhoseObserversUpdateEachOtherFinish) {
    const auto owner = makePlain();
    std::atomic<int> calls{0};
    std::atomic<bool> inside{false};
    const auto crossing = [&](const std::shared_ptr<ZelStyle>& target) {
        return [&, target](const auto&, const auto&, bool) {
            ++calls;
            if (!inside.exchange(true)) {
                update(target);
                inside = false;
            }
        };
    };
    plain->addStyleUpdateObserver(crossing(cover), owner, false);
    cover->addStyleUpdateObserver(crossing(plain), owner, false);
    repeatBoth([&] { update(plain); }, [&] { update(cover); });
    EXPECT_EQ(calls, 4 * rounds);
}

TEST_F(DeadlockTests, AListenerRegisteredDuringASwitchElsewhereKnowsTheStyleThatApplies) {
    const auto dark = addStyle(domain->darkScheme(), "main");
    const auto owner = makePlain();
    std::atomic<bool> called{false};
    std::atomic<bool> switched{false};
    std::shared_ptr<ZelStyle> told; // by calls that don't overlap
    runAtOnce({[&] {
                   domain->registerChangeHandler(
                       [&](const auto&, const auto& style, ZelStyleChangeEvent event) {
                           told = style;
                           if (event != ZelStyleChangeEventInitial) {
                               return;
                           }
                           called = true; // now the other one switches, as far as it may
                           const auto end =
                               std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
                           while (!switched && std::chrono::steady_clock::now() < end) {
                               std::this_thread::yield();
                           }
                       },
                       owner);
               },
               [&] {
                   while (!called) {
                       std::this_thread::yield();
                   }
                   domain->setCurrentScheme(domain->darkScheme());
                   switched = true;
               }});
    EXPECT_EQ(told, dark);
    EXPECT_EQ(owner->lastZelStyle(), ZelStyleToken(dark)) << "else it won't hear of the way back";
}

TEST_F(DeadlockTests, AnObserversOwnerMayEndElsewhereWhileTheDomainDelivers) {
    auto observing = makePlain();
    const std::weak_ptr<Plain> weak = observing;
    plain->addStyleUpdateObserver([](auto&&...) {}, observing, false);
    const auto owner = makePlain();
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == ZelStyleChangeEventChanged) {
                runElsewhere([&] { observing.reset(); });
            }
        },
        owner);
    update(plain);
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace zeltest
