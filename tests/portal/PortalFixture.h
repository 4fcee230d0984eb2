// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FakePortal.h"
#include "PrivateBus.h"
#include "tests/support/Sanitized.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelPortalAppearance.h>

#include <gtest/gtest.h>

#include <poll.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zeltest {

using zel::ZelPortalStatus;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Far longer than anything here takes; reached only where a test fails.
constexpr std::chrono::seconds patience{30};

inline bool isDark() {
    return zel::NSApplication::sharedApplication()->effectiveAppearance().name() ==
           "NSAppearanceNameDarkAqua";
}

inline void setLight() {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameAqua));
}

inline Clock::duration processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// A host with a loop of its own, in which the fake portals of the test take part.
class Host {
public:
    zel::ZelPortalOptions options;
    std::vector<ZelPortalStatus> heard; // every status in turn, repeated where the reason changed
    int rounds = 0;                     // of the loop
    Clock::duration longestCall{0};     // of `process`, by the clock on the wall
    Clock::duration longestWork{0};     // of `process`, in processor time
    std::optional<zel::ZelPortalAppearance> appearance{std::in_place};

    explicit Host(std::string address) {
        options.busAddress = std::move(address);
        // Long enough for a machine under load; tests of what is late set less.
        options.answerTimeout = 20s;
        options.retryAfter = 0ms;
        options.statusChanged = [this](ZelPortalStatus status, const std::string& reason) {
            EXPECT_FALSE(reason.empty());
            heard.push_back(status);
        };
    }

    void start() { appearance->start(options); }
    [[nodiscard]] ZelPortalStatus status() const { return appearance->status(); }

    /// Runs the loop until the condition holds; false where it never does.
    bool run(const std::function<bool()>& condition, std::vector<FakePortal*> portals = {}) {
        const auto end = Clock::now() + patience;
        while (!condition()) {
            if (Clock::now() >= end) {
                return false;
            }
            step(portals, 1s);
        }
        return true;
    }
    /// One round of the loop.
    void step(const std::vector<FakePortal*>& portals, std::chrono::milliseconds longestWait) {
        ++rounds;
        std::vector<pollfd> waited;
        waited.push_back({appearance->fileDescriptor(), appearance->events(), 0});
        for (const auto* portal : portals) {
            waited.push_back({portal->fileDescriptor(), POLLIN, 0});
        }
        const auto limit = std::chrono::ceil<std::chrono::milliseconds>(
            appearance->nextTimeout().value_or(patience));
        ::poll(waited.data(), waited.size(),
               static_cast<int>(std::min(limit, longestWait).count()));
        process();
        for (auto* portal : portals) {
            portal->process();
        }
    }
    void process() {
        const auto begin = Clock::now();
        const auto workBefore = processorTime();
        appearance->process();
        longestWork = std::max(longestWork, processorTime() - workBefore);
        longestCall = std::max(longestCall, Clock::now() - begin);
    }
    /// On any machine: whoever waited for a bus or a portal would have taken longer.
    void expectThatNothingWasWaitedFor() const {
        EXPECT_LT(longestCall, 5s);
        EXPECT_LT(longestWork, zeltest::kSanitized ? 2s : 100ms);
    }
    bool runUntil(ZelPortalStatus wanted, std::vector<FakePortal*> portals = {}) {
        return run([&] { return status() == wanted; }, std::move(portals));
    }
    bool runUntilDark(bool dark, std::vector<FakePortal*> portals) {
        return run([&] { return isDark() == dark; }, std::move(portals));
    }
};

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
};

} // namespace zeltest
