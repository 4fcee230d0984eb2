// SPDX-License-Identifier: Apache-2.0
#include "tests/appearance/TrackerFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace zeltest;
using zel::ZelStyleSystemAppearance;

class SystemAppearance : public TrackerTests {};

TEST_F(SystemAppearance, TheTypesHaveTheNumbersThatReceiversRead) {
    EXPECT_EQ(zel::ZelStyleSystemAppearanceTypeLight, 0U);
    EXPECT_EQ(zel::ZelStyleSystemAppearanceTypeDark, 1U);
    EXPECT_EQ(zel::ZelStyleSystemAppearanceChangedNotification, "ZelStyleSystemAppearanceChanged");
}

TEST_F(SystemAppearance, ATrackerIsLightBeforeItsFirstDetermination) {
    makeSystemDark();
    EXPECT_EQ(zel::alloc<ZelStyleSystemAppearance>()->currentAppearanceType(), 0U);
}

TEST_F(SystemAppearance, ATrackerMadeWhileTheSystemIsLightIsLightAndPostsNothing) {
    const auto tracker = makeTracker();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
    EXPECT_TRUE(senders.empty());
}

TEST_F(SystemAppearance, ATrackerMadeWhileTheSystemIsDarkPostsOnceAfterItIsMade) {
    makeSystemDark();
    const auto tracker = makeTracker();
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    EXPECT_TRUE(senders.empty());
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    ASSERT_EQ(senders.size(), 1U);
    EXPECT_EQ(senders[0], tracker);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
}

TEST_F(SystemAppearance, ATrackerMadeWhileTheSystemIsDarkTellsItsObserversAtOnce) {
    makeSystemDark();
    const auto tracker = zel::alloc<ZelStyleSystemAppearance>();
    const auto witness = zel::alloc<TypeWitness>();
    witness->observe(tracker);
    EXPECT_EQ(tracker->init(), tracker);
    EXPECT_EQ(witness->told, (std::vector<std::string>{"will from 0", "did to 1"}));
}

TEST_F(SystemAppearance, ATrackerObservesTheApplicationBeforeItFirstDetermines) {
    makeSystemDark();
    const auto tracker = zel::alloc<ZelStyleSystemAppearance>();
    const auto witness = zel::alloc<TypeWitness>();
    witness->observe(tracker);
    witness->then = [&] {
        if (witness->told.size() == 2) { // the tracker has just become dark
            makeSystem("NSAppearanceNameAqua");
        }
    };
    tracker->init();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
}

TEST_F(SystemAppearance, ATrackerFollowsEveryChangeOfTheApplicationsAppearance) {
    const auto tracker = makeTracker();
    makeSystem("NSAppearanceNameDarkAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    makeSystem("NSAppearanceNameAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    drain();
    EXPECT_EQ(senders.size(), 2U);
}

TEST_F(SystemAppearance, AChangeBetweenAppearancesOfOneTypeIsNoChange) {
    const auto tracker = makeTracker();
    makeSystem("NSAppearanceNameDarkAqua");
    drain();
    makeSystem("NSAppearanceNameVibrantDark");
    makeSystem("NSAppearanceNameAccessibilityHighContrastDarkAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 0U);
    makeSystem("NSAppearanceNameVibrantLight");
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    makeSystem("NSAppearanceNameAccessibilityHighContrastAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
}

TEST_F(SystemAppearance, AnAppearanceThatMatchesNeitherIsLight) {
    makeSystem("of my own");
    const auto tracker = makeTracker();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    makeSystem("NSAppearanceNameDarkAqua");
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    makeSystem("another of my own");
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
}

TEST_F(SystemAppearance, DeterminingStoresWhatTheSystemSays) {
    const auto tracker = makeTracker();
    tracker->setCurrentAppearanceType(7);
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
    makeSystem("NSAppearanceNameDarkAqua");
    tracker->setCurrentAppearanceType(0);
    tracker->determineFromSystemAppearance();
    EXPECT_EQ(tracker->currentAppearanceType(), 1U);
}

TEST_F(SystemAppearance, ACallbackWithAnotherContextDeterminesNothing) {
    const auto tracker = makeTracker();
    const auto& application = zel::NSApplication::sharedApplication();
    tracker->setCurrentAppearanceType(1); // which the light system isn't
    const int other = 0;
    for (const void* context : {static_cast<const void*>(nullptr), static_cast<const void*>(&other),
                                static_cast<const void*>(application.get())}) {
        tracker->observeValueForKeyPath("effectiveAppearance", *application, {}, context);
        EXPECT_EQ(tracker->currentAppearanceType(), 1U);
    }
}

TEST_F(SystemAppearance, ACallbackWithTheTrackersContextDeterminesWhateverElseItSays) {
    const auto tracker = makeTracker();
    const auto stranger = makePlain();
    tracker->setCurrentAppearanceType(1);
    tracker->observeValueForKeyPath("whatever", *stranger, {.isPrior = true}, tracker.get());
    EXPECT_EQ(tracker->currentAppearanceType(), 0U);
}

TEST_F(SystemAppearance, ATrackerThatHasEndedIsNotToldOfChanges) {
    auto tracker = makeTracker();
    const std::weak_ptr<ZelStyleSystemAppearance> weak = tracker;
    tracker.reset();
    EXPECT_TRUE(weak.expired());
    makeSystem("NSAppearanceNameDarkAqua");
    drain();
    EXPECT_TRUE(senders.empty());
}

TEST(SharedSystemAppearance, ThreadsThatAskAtOnceGetTheSameTracker) {
    std::vector<std::shared_ptr<ZelStyleSystemAppearance>> got(8);
    std::vector<std::function<void()>> asking;
    for (auto& each : got) {
        asking.emplace_back([&each] { each = ZelStyleSystemAppearance::sharedSystemAppearance(); });
    }
    runAtOnce(asking);
    ASSERT_NE(got[0], nullptr);
    for (const auto& each : got) {
        EXPECT_EQ(each, got[0]);
    }
}

/// A tracker of a host's own.
class OwnTracker : public ZelStyleSystemAppearance {};

// In a process of its own, as every test is run.
TEST(SharedSystemAppearance, IsOfTheClassThatTheFirstRequestNames) {
    const auto& made = ZelStyleSystemAppearance::sharedSystemAppearance<OwnTracker>();
    EXPECT_NE(std::dynamic_pointer_cast<OwnTracker>(made), nullptr);
    EXPECT_EQ(ZelStyleSystemAppearance::sharedSystemAppearance(), made);
}

} // namespace
