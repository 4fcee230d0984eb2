// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace zeltest;

/// A bus that starts a portal when it is asked for one.
class ActivationTests : public PortalTests {
protected:
    int held_ = -1; // while it is open, the program that should become the portal waits

    void startBusWithPortal(const std::string& command) {
        portal.reset();
        bus.stop();
        bus.setPortalCommand(command);
        ASSERT_TRUE(bus.start());
    }
    void startBusWithSlowPortal() {
        const std::string pipe = bus.folder() + "/held";
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        held_ = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_GE(held_, 0);
        startBusWithPortal("/bin/cat " + pipe);
    }
    void TearDown() override {
        PortalTests::TearDown();
        ::close(held_);
    }
};

TEST_F(ActivationTests, APortalThatCannotBeStartedIsTold) {
    startBusWithPortal("/bin/false");
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoPortal));
    EXPECT_FALSE(isDark());
    EXPECT_NE(host->appearance->reason().find("Spawn"), std::string::npos);
}

TEST_F(ActivationTests, APortalThatStartsSlowlyIsToldAndFollowedOnceItIsThere) {
    startBusWithSlowPortal();
    host->options.answerTimeout = 100ms;
    host->start();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoAnswer));
    EXPECT_FALSE(isDark());
    newPortal();
    portal->setScheme(1);
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(ActivationTests, TheAppearanceStaysWhileADeadPortalIsStartedSlowly) {
    startBusWithSlowPortal();
    newPortal();
    host->options.retryAfter = 1ms;
    host->options.answerTimeout = 100ms;
    followDark();
    portal.reset();
    ASSERT_TRUE(host->run([&] {
        return host->appearance->reason().find("has not started within 100 ms") !=
               std::string::npos;
    }));
    EXPECT_EQ(host->status(), ZelPortalStatus::Lost);
    EXPECT_TRUE(isDark());
    newPortal(); // which says light
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_FALSE(isDark());
}
