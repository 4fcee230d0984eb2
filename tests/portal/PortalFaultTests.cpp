// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include "tests/support/Sanitized.h"

#include <cstdlib>
#include <thread>

#include <sys/resource.h>

using namespace zeltest;

class PortalFaultTests : public PortalTests {
protected:
    void switchTo(std::uint32_t scheme) {
        portal->setScheme(scheme);
        portal->emitChange(scheme);
        ASSERT_TRUE(host->runUntilDark(scheme == 1, {&*portal}));
    }
};

TEST_F(PortalFaultTests, WithoutAPortalTheHostHearsOfItAndStaysLight) {
    portal.reset();
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoPortal));
    EXPECT_FALSE(isDark());
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::NoPortal}));
    EXPECT_NE(host->appearance->reason().find("ServiceUnknown"), std::string::npos);
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt); // nothing left to wait for but news
}

TEST_F(PortalFaultTests, APortalThatComesLaterIsFollowed) {
    portal.reset();
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoPortal));
    newPortal();
    portal->setScheme(1);
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(PortalFaultTests, ErrorsAreToldAndLight) {
    for (const char* const name :
         {"org.freedesktop.DBus.Error.UnknownMethod", "org.freedesktop.portal.Error.NotFound",
          "org.freedesktop.DBus.Error.NoReply", "org.example.Anything"}) {
        followDark();
        portal->setAnswer(error(name));
        portal->emitChange(1);
        ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoAnswer, {&*portal})) << name;
        EXPECT_FALSE(isDark()) << name;
        EXPECT_EQ(host->appearance->colorScheme(), std::nullopt) << name;
        EXPECT_NE(host->appearance->reason().find(name), std::string::npos) << name;
    }
}

TEST_F(PortalFaultTests, AnErrorIsRepairedByTheNextSignal) {
    portal->setAnswer(error("org.freedesktop.DBus.Error.UnknownMethod"));
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoAnswer, {&*portal}));
    switchTo(1);
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
}

TEST_F(PortalFaultTests, AnErrorIsRepairedByTryingAgain) {
    host->options.retryAfter = 1ms;
    int failures = 0;
    portal->setAnswer([&](sd_bus_message* question) {
        if (++failures == 4) {
            portal->setScheme(1);
        }
        error("org.freedesktop.DBus.Error.UnknownMethod")(question);
    });
    host->start();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(portal->questions(), 5);
    // The same failure again is no news.
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::NoAnswer,
                                        ZelPortalStatus::Following}));
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
}

TEST_F(PortalFaultTests, TryingAgainTakesTwiceAsLongEachTimeUntilAnAnswer) {
    host->options.retryAfter = 50ms;
    portal->setAnswer(error("org.freedesktop.DBus.Error.UnknownMethod"));
    host->start();
    std::vector<Clock::time_point> asked;
    ASSERT_TRUE(host->run(
        [&] {
            if (portal->questions() > static_cast<int>(asked.size())) {
                asked.push_back(Clock::now());
            }
            return asked.size() == 4;
        },
        {&*portal}));
    // Each was noted before the host heard that it had failed.
    EXPECT_GE(asked[1] - asked[0], 50ms);
    EXPECT_GE(asked[2] - asked[1], 100ms);
    EXPECT_GE(asked[3] - asked[2], 200ms);
}

TEST_F(PortalFaultTests, ASilentPortalIsToldInTimeAndItsLateAnswerCounts) {
    host->options.answerTimeout = 50ms;
    portal->keepQuestions();
    expectToldInTime(ZelPortalStatus::NoAnswer, [&] {
        ::setenv("SYSTEMD_BUS_TIMEOUT", "5ms", 1); // after which sd-bus by itself would give up
        const auto asked = Clock::now();
        host->start();
        ::unsetenv("SYSTEMD_BUS_TIMEOUT");
        return asked;
    });
    EXPECT_FALSE(isDark());
    EXPECT_NE(host->appearance->reason().find("50 ms"), std::string::npos);
    portal->answerKept(number(1));
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(PortalFaultTests, APortalThatFallsSilentIsToldInTimeAndLight) {
    host->options.answerTimeout = 200ms;
    expectToldInTime(ZelPortalStatus::NoAnswer, [&] {
        followDark();
        portal->keepQuestions();
        const auto asked = Clock::now();
        host->refresh();
        return asked;
    });
    EXPECT_FALSE(isDark());
}

TEST_F(PortalFaultTests, AnAnswerThatLayWaitingForABusyHostIsInTime) {
    host->options.answerTimeout = 1s;
    portal->keepQuestions();
    host->start();
    ASSERT_TRUE(host->run([&] { return portal->questions() == 1; }, {&*portal}));
    if (host->status() != ZelPortalStatus::Connecting) {
        GTEST_SKIP() << "this machine took longer to ask than an answer may take";
    }
    portal->emitFlood(100); // more than one call handles, less than a socket holds
    portal->answerKept(number(1));
    portal->setScheme(1);
    portal->finishSending();
    std::this_thread::sleep_for(1s); // the host does something else
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
}

TEST_F(PortalFaultTests, ADeadPortalLeavesTheAppearanceAndItsSuccessorIsAsked) {
    followDark();
    portal.reset();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost));
    EXPECT_TRUE(isDark());
    EXPECT_EQ(host->appearance->colorScheme(), 1U);
    newPortal(); // which says light
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_FALSE(isDark());
    switchTo(1);
}

TEST_F(PortalFaultTests, ADeadPortalIsCalledForAgainAndItsAppearanceStaysMeanwhile) {
    host->options.retryAfter = 1ms;
    followDark();
    portal.reset();
    // First that it has left, then that nobody can be asked.
    ASSERT_TRUE(host->run([&] { return host->heard.size() == 4; }));
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following,
                                        ZelPortalStatus::Lost, ZelPortalStatus::Lost}));
    EXPECT_NE(host->appearance->reason().find("ServiceUnknown"), std::string::npos);
    EXPECT_TRUE(isDark());
}

TEST_F(PortalFaultTests, APortalThatDiesWhileAskedLeavesTheAppearance) {
    followDark();
    portal->keepQuestions();
    portal->emitChange(0);
    ASSERT_TRUE(host->run([&] { return portal->questions() == 2; }, {&*portal}));
    portal.reset();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost));
    EXPECT_TRUE(isDark());
    newPortal();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_FALSE(isDark());
}

TEST_F(PortalFaultTests, SignalsOfOthersAreNotFollowed) {
    follow();
    FakePortal stranger(bus.address());
    stranger.emitChange(1);
    stranger.emitChange(1, portal->asker().c_str());
    stranger.forgeDeparture(portal->asker().c_str());
    settle(stranger);
    EXPECT_EQ(portal->questions(), 1);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
    switchTo(1);
}

TEST_F(PortalFaultTests, APortalThatGaveItsNameAwayIsNotFollowedAnyMore) {
    portal->dropName();
    FakePortal predecessor(bus.address());
    predecessor.takeName();
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&predecessor}));
    predecessor.dropName();
    portal->takeName();
    ASSERT_TRUE(host->run([&] { return portal->questions() == 1; }, {&*portal}));
    predecessor.emitChange(1);
    predecessor.emitChange(1, portal->asker().c_str());
    settle(predecessor);
    EXPECT_EQ(portal->questions(), 1);
    switchTo(1);
}

TEST_F(PortalFaultTests, AFloodOfSignalsIsOneMoreQuestionAndLeavesTheHostItsTurn) {
    constexpr int signals = 100000;
    follow();
    rusage before{};
    ::getrusage(RUSAGE_SELF, &before);
    portal->keepQuestions();
    portal->emitChange(1);
    ASSERT_TRUE(host->run([&] { return portal->questions() == 2; }, {&*portal}));
    portal->emitFlood(signals);
    portal->answerKept(number(0)); // arrives behind the flood
    portal->setScheme(1);
    host->rounds = 0;
    ASSERT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(portal->questions(), 3);
    EXPECT_GE(host->rounds, signals / 100);
    rusage after{};
    ::getrusage(RUSAGE_SELF, &after);
    const auto grown = after.ru_maxrss - before.ru_maxrss;              // kilobytes
    EXPECT_TRUE(zeltest::underSanitizer || grown < 16 * 1024) << grown; // the flood is larger
}
