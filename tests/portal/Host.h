// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FakePortal.h"
#include "Usage.h"
#include "tests/support/Sanitized.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelPortalAppearance.h>

#include <gtest/gtest.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zeltest {

using zel::ZelPortalStatus;
using namespace std::chrono_literals;

/// Far longer than anything here takes; reached only where a test fails.
constexpr std::chrono::seconds patience{30};
/// How long an operation that never blocks may sleep, since the kernel has locks of its own.
/// Whoever waited would sleep for longer: no portal of the test's answers while the host is inside
/// an operation, and no frozen bus ever.
inline Clock::duration allowedSleep() {
    return Usage::knowsSleep() ? 100ms : 5s; // a busy machine's queue
}
/// How long it may work.
constexpr Clock::duration allowedWork = underSanitizer ? 2s : 100ms;

inline bool isDark() {
    return zel::NSApplication::sharedApplication()->effectiveAppearance().name() ==
           "NSAppearanceNameDarkAqua";
}

inline void setLight() {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameAqua));
}

/// A host with a loop of its own, in which the fake portals of the test take part. It looks at what
/// each operation costs.
class Host {
public:
    /// Of all calls of one operation that never blocks.
    struct Cost {
        int calls = 0;
        int sleepingCalls = 0;
        Clock::duration longestSleep{0};
        Clock::duration longestWork{0};
    };

    zel::ZelPortalOptions options;
    std::vector<ZelPortalStatus> heard; // every status in turn, repeated where the reason changed
    int rounds = 0;                     // of the loop
    std::optional<zel::ZelPortalAppearance> appearance{std::in_place};
    std::map<std::string_view, Cost> costs; // by operation

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

    void start() {
        neverBlocking("start", [this] { appearance->start(options); });
    }
    void process() {
        neverBlocking("process", [this] { appearance->process(); });
    }
    void refresh() {
        neverBlocking("refresh", [this] { appearance->refresh(); });
    }
    void stop() {
        neverBlocking("stop", [this] { appearance->stop(); });
    }
    /// Destroys what follows; another one, which doesn't, takes its place.
    void renew() {
        neverBlocking("destroy", [this] { appearance.reset(); });
        appearance.emplace();
    }
    /// Expects it to wait no longer than it may: not at all where there is an answer.
    ZelPortalStatus waitForFirstAnswer(std::chrono::milliseconds limit) {
        const auto longest = status() == ZelPortalStatus::Connecting ? limit : 0ms;
        auto result = ZelPortalStatus::Stopped;
        const auto used = Usage::of([&] { result = appearance->waitForFirstAnswer(limit); });
        EXPECT_LT(used.sleep + used.work, longest + allowedSleep() + allowedWork);
        return result;
    }
    void expectThatNothingWasWaitedFor() const {
        for (const auto& [operation, cost] : costs) {
            EXPECT_LE(cost.sleepingCalls, 2 + cost.calls / 20) << operation;
            EXPECT_LT(cost.longestSleep, allowedSleep()) << operation;
            EXPECT_LT(cost.longestWork, allowedWork) << operation;
        }
    }

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
    bool runUntil(ZelPortalStatus wanted, std::vector<FakePortal*> portals = {}) {
        return run([&] { return status() == wanted; }, std::move(portals));
    }
    bool runUntilDark(bool dark, std::vector<FakePortal*> portals) {
        return run([&] { return isDark() == dark; }, std::move(portals));
    }

private:
    template <class Operation>
    void neverBlocking(std::string_view name, Operation operation) {
        const auto used = Usage::of(operation);
        auto& cost = costs[name];
        ++cost.calls;
        cost.sleepingCalls += used.slept ? 1 : 0;
        cost.longestSleep = std::max(cost.longestSleep, used.sleep);
        cost.longestWork = std::max(cost.longestWork, used.work);
    }
};

} // namespace zeltest
