// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Styling.h"
#include "tests/support/Watchdog.h"

#include <future>

namespace zeltest {
namespace {

using namespace zel;

/// Operations that wait for what another thread is in the middle of.
class WaitingTests : public StylingTests {
protected:
    /// Has `task` done elsewhere while `inside` is under way, and looks whether it waits for it.
    void doMeanwhile(std::function<void()> task) {
        std::packaged_task<void()> packaged(std::move(task));
        doing = packaged.get_future();
        std::thread(std::move(packaged)).detach();
        constexpr std::chrono::milliseconds longEnough{100}; // to be done where it doesn't wait
        EXPECT_EQ(doing.wait_for(longEnough), std::future_status::timeout) << "it didn't wait";
    }
    /// Once what it waited for is over.
    void expectDone() {
        ASSERT_TRUE(doing.valid()) << "it wasn't even begun";
        runElsewhere([this] { doing.get(); });
    }

    std::future<void> doing;
};

TEST_F(WaitingTests, WhoAsksForADomainDoesNotWaitForAResetAndKeepsIt) {
    const auto owner = makePlain();
    std::weak_ptr<NSObject> made;
    {
        makeSystemDark();
        const auto ending = ZelStyleDomain::domainForIdentifier("ending");
        addStyle(ending->darkScheme(), "main");
        addStyle(ending->lightScheme(), "main");
        ending->setSchemeFollowsSystem(true);
        ending->registerChangeHandler(
            [&](const auto&, const auto&, ZelStyleChangeEvent event) {
                if (event == ZelStyleChangeEventChanged) { // it goes to light while it ends
                    runElsewhere([&] { made = ZelStyleDomain::domainForIdentifier("asked for"); });
                }
            },
            owner);
    }
    ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_FALSE(made.expired()) << "a domain that was made during a reset is gone";
}

TEST_F(WaitingTests, WhoAddsAnObserverToAStyleWaitsForADelivery) {
    const auto domain = ZelStyleDomain::defaultDomain();
    addStyle(domain->defaultScheme(), "main");
    const auto other = addStyle(domain->defaultScheme(), "other");
    const auto owner = makePlain();
    const auto observer = makePlain();
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == ZelStyleChangeEventChanged) {
                doMeanwhile([&] {
                    other->addStyleUpdateObserver([](const auto&, const auto&, bool) {}, observer,
                                                  true);
                });
            }
        },
        owner);
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    expectDone();
}

} // namespace
} // namespace zeltest
