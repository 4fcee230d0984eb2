// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"
#include "tests/threads/Progress.h"

#include <gtest/gtest.h>

#include <latch>

namespace zeltest {
namespace {

using namespace std::chrono_literals;

/// What ends the process where threads are stuck does so, and says which.
class WatchdogDeathTests : public testing::Test {
protected:
    WatchdogDeathTests() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// Has two threads take two locks, each the other one first.
    void waitForEachOther() {
        std::mutex left;
        std::mutex right;
        std::latch bothHaveOne(2);
        const auto takeBoth = [&](Progress& own, std::mutex& first, std::mutex& second) {
            own.begin("taking the first");
            const std::scoped_lock firstGuard(first);
            bothHaveOne.arrive_and_wait();
            own.begin("taking the second");
            const std::scoped_lock secondGuard(second);
        };
        const ProgressWatch watch(threads, {.turn = 10ms, .withAll = 5, .withOne = 1000});
        std::thread one([&] { takeBoth(threads[0], left, right); });
        std::thread other([&] { takeBoth(threads[1], right, left); });
        one.join();
        other.join();
    }

    std::deque<Progress> threads;
};

TEST_F(WatchdogDeathTests, ThreadsThatWaitForEachOtherEndTheProcessAndAreNamed) {
    threads.emplace_back("one");
    threads.emplace_back("other");
    EXPECT_DEATH(waitForEachOther(), "threads are stuck:\n"
                                     "  one: taking the second, its operation 2\n"
                                     "  other: taking the second, its operation 2\n");
}

TEST_F(WatchdogDeathTests, AThreadThatStaysBehindEndsTheProcess) {
    threads.emplace_back("busy");
    threads.emplace_back("behind");
    const auto leaveOneBehind = [this] {
        threads[1].begin("waiting");
        const ProgressWatch watch(threads, {.turn = 10ms, .withAll = 1000, .withOne = 5});
        for (;;) {
            threads[0].begin("going on");
            std::this_thread::yield();
        }
    };
    EXPECT_DEATH(leaveOneBehind(), "threads are stuck:\n"
                                   "  busy: going on, its operation [0-9]+\n"
                                   "  behind: waiting, its operation 1\n");
}

TEST_F(WatchdogDeathTests, ATaskThatDoesNotEndEndsTheProcess) {
    std::mutex held;
    const std::scoped_lock guard(held);
    EXPECT_EXIT(runAtOnce({[] {}, [&held] { const std::scoped_lock waiting(held); }}, 50ms),
                testing::ExitedWithCode(3), "threads are stuck");
}

} // namespace
} // namespace zeltest
