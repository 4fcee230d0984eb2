// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/TrackerFixture.h"
#include "tests/support/Recorder.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace zeltest;

class AppearanceNotification : public TrackerTests {
protected:
    const std::shared_ptr<zel::ZelStyleSystemAppearance> tracker = makeTracker();
    const std::shared_ptr<TypeWitness> witness = zel::alloc<TypeWitness>();
};

TEST_F(AppearanceNotification, AChangeIsAnnouncedBeforeAndAfterItAndPostedLater) {
    witness->observe(tracker);
    tracker->setCurrentAppearanceType(1);
    EXPECT_EQ(witness->told, (std::vector<std::string>{"will from 0", "did to 1"}));
    EXPECT_TRUE(senders.empty());
    drain();
    EXPECT_EQ(senders, std::vector<std::shared_ptr<zel::NSObject>>{tracker});
}

TEST_F(AppearanceNotification, TheSameTypeAgainIsNeitherAnnouncedNorPosted) {
    tracker->setCurrentAppearanceType(1);
    drain();
    senders.clear();
    witness->observe(tracker);
    tracker->setCurrentAppearanceType(1);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
    EXPECT_TRUE(witness->told.empty());
    EXPECT_TRUE(senders.empty());
}

TEST_F(AppearanceNotification, AnyNumberIsStoredAndPosted) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    tracker->setCurrentAppearanceType(largest);
    EXPECT_EQ(tracker->currentAppearanceType(), 18446744073709551615U);
    drain();
    EXPECT_EQ(typesRead, std::vector<std::uint64_t>{18446744073709551615U});
}

TEST_F(AppearanceNotification, TwoChangesInQuickSuccessionPostTwiceAndBothReadTheLastType) {
    tracker->setCurrentAppearanceType(1);
    tracker->setCurrentAppearanceType(0);
    drain();
    EXPECT_EQ(senders, (std::vector<std::shared_ptr<zel::NSObject>>{tracker, tracker}));
    EXPECT_EQ(typesRead, (std::vector<std::uint64_t>{0, 0}));
}

TEST_F(AppearanceNotification, AChangeMadeByAReceiverIsPostedOnTheNextTurn) {
    const auto receiver = makePlain();
    zel::NSNotificationCenter::defaultCenter().addObserver(
        receiver, [&](const zel::NSNotification&) { tracker->setCurrentAppearanceType(0); },
        "ZelStyleSystemAppearanceChanged", tracker);
    tracker->setCurrentAppearanceType(1);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    EXPECT_EQ(senders.size(), 1U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    EXPECT_EQ(senders.size(), 2U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
}

TEST_F(AppearanceNotification, TheTrackerIsHeldUntilItsNotificationWasPosted) {
    auto ending = makeTracker();
    const std::weak_ptr<zel::NSObject> weak = ending;
    ending->setCurrentAppearanceType(1);
    ending.reset();
    EXPECT_FALSE(weak.expired());
    drain();
    ASSERT_EQ(senders.size(), 1U);
    EXPECT_NE(senders[0], nullptr);
    senders.clear();
    EXPECT_TRUE(weak.expired());
}

TEST_F(AppearanceNotification, AFollowingDomainIsToldOnTheDrainingThreadWhereverTheTypeChanged) {
    const auto domain = zel::ZelStyleDomain::domainForIdentifier("following");
    addStyle(domain->lightScheme(), "main");
    const auto dark = addStyle(domain->darkScheme(), "main");
    domain->setSchemeFollowsSystem(true);
    const auto owner = makePlain();
    Recorder recorder;
    std::thread::id on;
    domain->registerChangeHandler(
        recorder.handler("owner", [&] { on = std::this_thread::get_id(); }), owner);
    recorder.take();
    runElsewhere([] {
        zel::ZelStyleSystemAppearance::sharedSystemAppearance()->setCurrentAppearanceType(1);
    });
    EXPECT_TRUE(recorder.take().empty());
    drain();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
    EXPECT_EQ(on, std::this_thread::get_id());
}

TEST_F(AppearanceNotification, ADomainReadsTheTypeThatHoldsWhenTheNotificationComes) {
    const auto domain = zel::ZelStyleDomain::domainForIdentifier("following");
    addStyle(domain->lightScheme(), "main");
    addStyle(domain->darkScheme(), "main");
    domain->setSchemeFollowsSystem(true);
    const auto owner = makePlain();
    Recorder recorder;
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    recorder.take();
    makeSystem("NSAppearanceNameDarkAqua");
    makeSystem("NSAppearanceNameAqua");
    drain();
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
}

} // namespace
