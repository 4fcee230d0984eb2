// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSBundle.h>
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelQtMainQueue.h>

#include <QCoreApplication>
#include <QLocale>

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

/// Names compared in Qt's default locale, which it brings itself, installed or not.
class QtComparisonTests : public testing::Test {
protected:
    ~QtComparisonTests() override { QLocale::setDefault(QLocale::system()); }
    static int compare(std::string_view a, std::string_view b) {
        const int order = zel::localizedCaseInsensitiveCompare(a, b);
        return (order > 0) - (order < 0);
    }
};

TEST_F(QtComparisonTests, NamesAreComparedInTheDefaultLocale) {
    const zel::ZelQtMainQueue driver;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(compare("ö", "z"), -1);
    EXPECT_EQ(compare("ofen", "Öfen"), -1);
    QLocale::setDefault(QLocale(QLocale::Swedish, QLocale::Sweden));
    EXPECT_EQ(compare("ö", "z"), 1);
    EXPECT_EQ(compare("Å", "ä"), -1);
}

TEST_F(QtComparisonTests, UpperAndLowerCaseAreTheSame) {
    const zel::ZelQtMainQueue driver;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(compare("ÄPFEL", "äpfel"), 0);
    EXPECT_EQ(compare("amber", "Blue"), -1);
    EXPECT_EQ(compare("Amber", "blue"), -1);
}

TEST_F(QtComparisonTests, BrokenBytesAreComparedAsWell) {
    const zel::ZelQtMainQueue driver;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(compare("\xFF\xC3", "\xFE\x80"), 0);
    EXPECT_NE(compare("a\xFF", "b"), 0);
}

TEST_F(QtComparisonTests, WithoutItQtIsNotAsked) {
    { const zel::ZelQtMainQueue driver; }
    qputenv("LC_ALL", "C");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(compare("ö", "z"), 1); // by code points, as the environment has it
}

} // namespace
