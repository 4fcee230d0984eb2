// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelQtMainQueue.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

zel::NSMainQueue& queue() {
    return zel::NSMainQueue::mainQueue();
}

/// Leaves nothing queued.
class QtMainQueueTests : public testing::Test {
protected:
    ~QtMainQueueTests() override {
        while (queue().drain() > 0) {
        }
    }
    std::vector<int> ran;
};

TEST_F(QtMainQueueTests, TasksRunOnTheEventLoopInOrder) {
    const zel::ZelQtMainQueue driver;
    queue().async([&] { ran.push_back(1); });
    queue().async([&] { ran.push_back(2); });
    EXPECT_TRUE(ran.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (std::vector{1, 2}));
}

TEST_F(QtMainQueueTests, TasksThatWereAddedBeforeRunAsWell) {
    queue().async([&] { ran.push_back(1); });
    const zel::ZelQtMainQueue driver;
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (std::vector{1}));
}

TEST_F(QtMainQueueTests, ATaskFromAnotherThreadRunsOnTheMainThread) {
    const zel::ZelQtMainQueue driver;
    std::thread::id ranOn;
    std::thread([&] { queue().async([&] { ranOn = std::this_thread::get_id(); }); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(QtMainQueueTests, ATaskThatATaskAddsRunsInItsTurn) {
    const zel::ZelQtMainQueue driver;
    queue().async([&] {
        ran.push_back(1);
        queue().async([&] { ran.push_back(2); });
    });
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (std::vector{1, 2}));
}

TEST_F(QtMainQueueTests, WithoutItTheQueueWaits) {
    { const zel::ZelQtMainQueue driver; }
    queue().async([&] { ran.push_back(1); });
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran.empty());
}

} // namespace
