// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSMainQueue.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using zel::NSMainQueue;

class MainQueue : public testing::Test {
protected:
    void add(const std::string& name) {
        queue.async([this, name] { ran += name; });
    }

    NSMainQueue queue;
    std::string ran;
};

TEST_F(MainQueue, ATaskWaitsUntilTheQueueIsDrained) {
    add("a");
    EXPECT_EQ(ran, "");
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(ran, "a");
    EXPECT_EQ(queue.drain(), 0U);
    EXPECT_EQ(ran, "a");
}

TEST_F(MainQueue, TasksRunInTheOrderInWhichTheyWereAdded) {
    add("a");
    add("b");
    add("c");
    EXPECT_EQ(queue.drain(), 3U);
    EXPECT_EQ(ran, "abc");
}

TEST_F(MainQueue, ATaskAddedMeanwhileWaitsForTheNextDrain) {
    queue.async([this] { add("late"); });
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(ran, "");
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(ran, "late");
}

TEST_F(MainQueue, ATasksExceptionPassesAndTheTasksBehindItStayQueued) {
    add("a");
    queue.async([] { throw std::runtime_error("no"); });
    add("b");
    EXPECT_THROW(queue.drain(), std::runtime_error);
    EXPECT_EQ(ran, "a");
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(ran, "ab");
}

TEST_F(MainQueue, ATaskMayDrainTheQueueItself) {
    std::size_t inner = 0;
    queue.async([&] { inner = queue.drain(); });
    add("a");
    add("b");
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(inner, 2U);
    EXPECT_EQ(ran, "ab");
}

TEST_F(MainQueue, NoTaskIsNoTask) {
    int wakes = 0;
    queue.setWakeHook([&] { ++wakes; });
    queue.async(nullptr);
    EXPECT_EQ(wakes, 0);
    EXPECT_EQ(queue.drain(), 0U);
}

TEST_F(MainQueue, TheWakeHookIsCalledForEachTaskAddedAndRunsNone) {
    int wakes = 0;
    queue.setWakeHook([&] { ++wakes; });
    add("a");
    EXPECT_EQ(wakes, 1);
    add("b");
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(ran, "");
    queue.drain();
    EXPECT_EQ(wakes, 2);
}

TEST_F(MainQueue, ATaskIsQueuedByTheTimeTheWakeHookIsCalled) {
    bool drained = false;
    queue.setWakeHook([&] { zeltest::runElsewhere([&] { drained = queue.drain() == 1; }); });
    add("a");
    EXPECT_TRUE(drained);
    EXPECT_EQ(ran, "a");
}

TEST_F(MainQueue, TheWakeHookIsCalledOnTheThreadThatAddsTheTask) {
    std::thread::id woken;
    std::thread::id adding;
    queue.setWakeHook([&] { woken = std::this_thread::get_id(); });
    zeltest::runElsewhere([&] {
        adding = std::this_thread::get_id();
        add("a");
    });
    EXPECT_EQ(woken, adding);
    EXPECT_EQ(queue.drain(), 1U);
}

TEST_F(MainQueue, TheWakeHookMayTakeItselfAway) {
    int wakes = 0;
    queue.setWakeHook([&] {
        ++wakes;
        queue.setWakeHook(nullptr);
    });
    add("a");
    add("b");
    EXPECT_EQ(wakes, 1);
    EXPECT_EQ(queue.drain(), 2U);
}

TEST_F(MainQueue, ATaskIsGoneOnceItHasRun) {
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> weak = captured;
    queue.async([captured] { EXPECT_EQ(*captured, 1); });
    captured.reset();
    EXPECT_FALSE(weak.expired());
    queue.drain();
    EXPECT_TRUE(weak.expired());
}

TEST_F(MainQueue, TasksOfManyThreadsAllRunEachThreadsInOrder) {
    constexpr int threads = 4;
    constexpr int each = 500;
    std::vector<std::vector<int>> order(threads);
    std::vector<std::function<void()>> adding;
    for (int thread = 0; thread < threads; ++thread) {
        adding.emplace_back([&, thread] {
            for (int i = 0; i < each; ++i) {
                queue.async(
                    [&order, thread, i] { order[static_cast<std::size_t>(thread)].push_back(i); });
            }
        });
    }
    zeltest::runAtOnce(adding);
    EXPECT_EQ(queue.drain(), 2000U);
    for (const auto& tasks : order) {
        ASSERT_EQ(tasks.size(), 500U);
        for (int i = 0; i < each; ++i) {
            EXPECT_EQ(tasks[static_cast<std::size_t>(i)], i);
        }
    }
}

TEST_F(MainQueue, TheProcessHasOneMainQueue) {
    EXPECT_EQ(&NSMainQueue::mainQueue(), &NSMainQueue::mainQueue());
    EXPECT_NE(&NSMainQueue::mainQueue(), &queue);
}

} // namespace
