// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FakePortal.h"
#include "Host.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace zeltest {

/// A bus, a portal on it that says "light", and a host that doesn't follow yet.
class PortalTests : public testing::Test {
protected:
    PrivateBus bus;
    std::optional<FakePortal> portal;
    std::optional<Host> host;

    void SetUp() override {
        if (!PrivateBus::isInstalled()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        setLight();
        ASSERT_TRUE(bus.start());
        newPortal();
        host.emplace(bus.address());
    }
    /// Leaves the bus, whatever has become of it.
    void TearDown() override {
        if (host) {
            host->renew();
            host->expectThatNothingWasWaitedFor();
        }
    }
    void newPortal() {
        portal.emplace(bus.address());
        portal->takeName();
    }
    void follow() {
        host->start();
        ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    }
    /// Returns when the host has handled all that `sender` sent, and the portal what the host
    /// asked.
    void settle(FakePortal& sender) {
        sender.knock(portal->asker());
        ASSERT_TRUE(host->run([&] { return sender.wasHeard(); }, {&*portal, &sender}));
        portal->finishSending();
        portal->process();
    }
    void followDark() {
        portal->setScheme(1);
        follow();
        ASSERT_TRUE(isDark());
    }
    /// Has the host ask what nobody answers, and expects it to hear of that when the time for an
    /// answer is up: never before, and soon after. A busy machine has ten tries for the latter.
    /// `ask` returns the moment from which the time counts.
    void expectToldInTime(ZelPortalStatus told, const std::function<Clock::time_point()>& ask) {
        for (int tries = 0; tries < 10; ++tries) {
            const auto begin = ask();
            ASSERT_TRUE(host->runUntil(told, {&*portal}));
            const auto waited = Clock::now() - begin;
            ASSERT_GE(waited, host->options.answerTimeout);
            if (waited < 2 * host->options.answerTimeout) {
                return;
            }
        }
        ADD_FAILURE() << "late each time";
    }
};

} // namespace zeltest
