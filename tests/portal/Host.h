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
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zeltest {

using zel::ZelPortalStatus;
using namespace std::chrono_literals;

/// Far longer than anything here takes; reached only where a test fails.
constexpr std::chrono::seconds patience{30};
/// What an operation that never blocks may take on a busy machine. Whoever waited would take
/// longer: no portal of the test's answers while the host is inside an operation, and no frozen bus
/// ever.
constexpr std::chrono::seconds busyMachine{5};

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
    zel::ZelPortalOptions options;
    std::vector<ZelPortalStatus> heard; // every status in turn, repeated where the reason changed
    int rounds = 0;                     // of the loop
    int calls = 0;                      // of operations that never block
    int sleepingCalls = 0;              // of them
    Clock::duration longestCall{0};     // of them, by the clock on the wall
    Clock::duration longestWork{0};     // of them, in processor time
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

    void start() {
        neverBlocking([this] { appearance->start(options); });
    }
    void process() {
        neverBlocking([this] { appearance->process(); });
    }
    void refresh() {
        neverBlocking([this] { appearance->refresh(); });
    }
    void stop() {
        neverBlocking([this] { appearance->stop(); });
    }
    /// Destroys what follows; another one, which doesn't, takes its place.
    void renew() {
        neverBlocking([this] { appearance.reset(); });
        appearance.emplace();
    }
    ZelPortalStatus waitForFirstAnswer(std::chrono::milliseconds limit) {
        const auto begin = Clock::now();
        const auto result = appearance->waitForFirstAnswer(limit);
        EXPECT_LT(Clock::now() - begin, limit + busyMachine);
        return result;
    }
    void expectThatNothingWasWaitedFor() const {
        EXPECT_LT(longestCall, busyMachine);
        EXPECT_LT(longestWork, zeltest::kSanitized ? 2s : 100ms);
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
    void neverBlocking(Operation operation) {
        const Usage before;
        operation();
        const Usage after;
        longestCall = std::max(longestCall, after.time - before.time);
        longestWork = std::max(longestWork, after.work - before.work);
        ++calls;
        sleepingCalls += after.sleeps > before.sleeps ? 1 : 0;
    }
};

} // namespace zeltest
