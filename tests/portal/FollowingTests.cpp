// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include "tests/support/Threads.h"

#include <atomic>
#include <thread>

using namespace zeltest;

class FollowingTests : public PortalTests {};

TEST_F(FollowingTests, OneIsDark) {
    portal->setScheme(1);
    follow();
    EXPECT_TRUE(isDark());
    EXPECT_EQ(host->appearance->colorScheme(), 1U);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
}

TEST_F(FollowingTests, EveryOtherNumberIsLight) {
    for (const std::uint32_t scheme : {0U, 2U, 3U, 4294967295U}) {
        followDark();
        portal->setScheme(scheme);
        portal->emitChange(scheme);
        EXPECT_TRUE(host->runUntilDark(false, {&*portal}));
        EXPECT_EQ(host->appearance->colorScheme(), scheme);
        EXPECT_EQ(host->status(), ZelPortalStatus::Following);
    }
}

TEST_F(FollowingTests, EachSwitchOfTheDesktopIsOneChangeOfTheAppearance) {
    class Observer : public zel::NSObject {
    public:
        int changes = 0;
        void observeValueForKeyPath(std::string_view, zel::NSObject&, const zel::NSKeyValueChange&,
                                    const void*) override {
            ++changes;
        }
    };
    follow();
    const auto observer = zel::alloc<Observer>();
    zel::NSApplication::sharedApplication()->addObserver(
        observer, "effectiveAppearance", zel::NSKeyValueObservingOptions::Default, nullptr);
    int switches = 0;
    for (const std::uint32_t scheme : {1U, 0U, 1U, 2U}) {
        portal->setScheme(scheme);
        portal->emitChange(scheme);
        ASSERT_TRUE(host->runUntilDark(scheme == 1, {&*portal}));
        EXPECT_EQ(observer->changes, ++switches);
    }
    EXPECT_EQ(portal->questions(), 5);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
}

TEST_F(FollowingTests, AChangeRightAfterTheFirstAnswerIsNotMissed) {
    portal->setAnswer([this](sd_bus_message* question) {
        number(0)(question);
        portal->setScheme(1);
        portal->emitChange(1);
    });
    host->start();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
}

TEST_F(FollowingTests, AChangeWhileAQuestionIsUnderWayIsAskedForAfterwards) {
    portal->keepQuestions();
    host->start();
    ASSERT_TRUE(host->run([&] { return portal->questions() == 1; }, {&*portal}));
    portal->emitChange(1);
    portal->finishSending();
    portal->answerKept(number(0));
    portal->setScheme(1);
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(portal->questions(), 2);
}

TEST_F(FollowingTests, WhatASignalCarriesIsNotTrusted) {
    follow();
    portal->emitChange(1); // and still answers 0
    settle(*portal);
    EXPECT_EQ(portal->questions(), 2);
    settle(*portal); // with the answer
    EXPECT_FALSE(isDark());
}

TEST_F(FollowingTests, OtherSettingsAreNotAskedFor) {
    follow();
    portal->emitChangeOf("org.gnome.desktop.interface", "color-scheme");
    portal->emitChangeOf("org.freedesktop.appearance", "accent-color");
    portal->emitChangeOf("org.gnome.desktop.interface", "color-scheme", portal->asker().c_str());
    settle(*portal);
    EXPECT_EQ(portal->questions(), 1);
}

TEST_F(FollowingTests, OneVariantIsUnwrappedAsTwoAre) {
    for (const int variants : {1, 2, 3}) {
        portal->setAnswer(number(1, variants));
        follow();
        EXPECT_TRUE(isDark()) << variants << " variants";
        portal->setScheme(0);
        portal->emitChange(0);
        ASSERT_TRUE(host->runUntilDark(false, {&*portal}));
    }
}

TEST_F(FollowingTests, AnythingButANumberIsLight) {
    const FakePortal::Answer answers[] = {
        reply("v", "s", "1"),                // a string
        reply("v", "v", "s", "prefer-dark"), // one inside
        reply("v", "i", 1),                  // a signed number
        reply("v", "au", 1, 1),              // a list
        reply("v", "(uu)", 1, 1),            // a structure
        reply("v", "a{sv}", 1, "a", "u", 1), // a table
        reply(""),                           // nothing
        reply("u", 1),                       // no variant
        reply("vv", "u", 1, "u", 1),         // too much
        number(1, 20),                       // too deep
    };
    for (const auto& answer : answers) {
        const auto which = &answer - std::begin(answers);
        followDark();
        portal->setAnswer(answer);
        portal->emitChange(1);
        ASSERT_TRUE(host->runUntilDark(false, {&*portal})) << which;
        EXPECT_EQ(host->status(), ZelPortalStatus::Following) << which;
        EXPECT_EQ(host->appearance->colorScheme(), std::nullopt) << which;
        EXPECT_NE(host->appearance->reason().find("not a number"), std::string::npos) << which;
    }
}

TEST_F(FollowingTests, TheFirstAnswerCanBeWaitedFor) {
    portal->setScheme(1);
    std::atomic<bool> over = false;
    std::thread elsewhere([&] {
        while (!over) {
            portal->process();
        }
    });
    host->start();
    EXPECT_EQ(host->status(), ZelPortalStatus::Connecting);
    EXPECT_EQ(host->waitForFirstAnswer(20s), ZelPortalStatus::Following);
    EXPECT_TRUE(isDark());
    over = true;
    elsewhere.join();
}

TEST_F(FollowingTests, NoThreadIsStarted) {
    const auto before = threadCount();
    followDark();
    EXPECT_EQ(threadCount(), before);
}

TEST_F(FollowingTests, WhileNothingHappensNothingWakesTheHost) {
    follow();
    host->process();
    EXPECT_EQ(host->appearance->events(), POLLIN);
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
    pollfd waited{host->appearance->fileDescriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&waited, 1, 0), 0);
}

TEST_F(FollowingTests, StoppingLeavesTheAppearanceAndTheBus) {
    followDark();
    host->stop();
    EXPECT_TRUE(isDark());
    EXPECT_EQ(host->status(), ZelPortalStatus::Stopped);
    EXPECT_EQ(host->appearance->fileDescriptor(), -1);
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
    host->process();
    host->refresh();
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
    EXPECT_EQ(host->heard.size(), 2U);
}

TEST_F(FollowingTests, TheHostsOwnAppearanceStaysUntilTheDesktopsChanges) {
    followDark();
    setLight();
    portal->emitChange(1);
    settle(*portal);
    EXPECT_EQ(portal->questions(), 2);
    settle(*portal); // with the answer
    EXPECT_FALSE(isDark());
}

TEST_F(FollowingTests, ARefreshAsksAgain) {
    follow();
    portal->setScheme(1); // and says nothing
    host->refresh();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(portal->questions(), 2);
}
