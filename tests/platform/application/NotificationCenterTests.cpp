// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/NSObject.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using zel::NSNotification;
using zel::NSNotificationCenter;
using zel::NSObject;

class NotificationCenter : public testing::Test {
protected:
    using Then = std::function<void()>;

    /// Has an observer write its name down whenever "rain" is posted, then do something else.
    void observe(const std::shared_ptr<NSObject>& by, const std::string& name,
                 const std::shared_ptr<NSObject>& from = nullptr, Then then = nullptr) {
        center.addObserver(
            by,
            [this, name, then = std::move(then)](const NSNotification&) {
                called += name;
                if (then) {
                    then();
                }
            },
            "rain", from);
    }
    void post(const std::shared_ptr<NSObject>& from = nullptr) {
        center.postNotificationName("rain", from);
    }

    NSNotificationCenter center;
    std::string called;
    const std::shared_ptr<NSObject> a = zel::alloc<NSObject>();
    const std::shared_ptr<NSObject> b = zel::alloc<NSObject>();
    const std::shared_ptr<NSObject> sender = zel::alloc<NSObject>();
};

TEST_F(NotificationCenter, AnObserverIsHandedTheNameAndTheSender) {
    std::vector<NSNotification> got;
    center.addObserver(
        a, [&](const NSNotification& each) { got.push_back(each); }, "rain", nullptr);
    post(sender);
    post();
    ASSERT_EQ(got.size(), 2U);
    EXPECT_EQ(got[0].name, "rain");
    EXPECT_EQ(got[0].object, sender);
    EXPECT_EQ(got[1].object, nullptr);
}

TEST_F(NotificationCenter, OtherNamesReachNobody) {
    observe(a, "a");
    center.postNotificationName("snow", sender);
    center.postNotificationName("", sender);
    EXPECT_EQ(called, "");
}

TEST_F(NotificationCenter, AnObserverOfOneSenderHearsOfThatSenderOnly) {
    observe(a, "a", sender);
    post(b);
    post();
    EXPECT_EQ(called, "");
    post(sender);
    EXPECT_EQ(called, "a");
}

TEST_F(NotificationCenter, AnObserverOfASenderThatHasEndedHearsNothingAnyMore) {
    auto ending = zel::alloc<NSObject>();
    observe(a, "a", ending);
    ending.reset();
    post();
    post(sender);
    EXPECT_EQ(called, "");
}

TEST_F(NotificationCenter, AnObserverAddedTwiceIsCalledTwiceInOrder) {
    observe(a, "1");
    observe(a, "2", sender);
    post(sender);
    EXPECT_EQ(called, "12");
}

TEST_F(NotificationCenter, RemovingEndsEveryRegistrationOfThatName) {
    observe(a, "1");
    observe(a, "2", sender);
    observe(b, "b");
    center.removeObserver(*a, "rain", nullptr);
    post(sender);
    EXPECT_EQ(called, "b");
}

TEST_F(NotificationCenter, RemovingForOneSenderLeavesTheOthers) {
    observe(a, "1");
    observe(a, "2", sender);
    observe(a, "3", b);
    center.removeObserver(*a, "rain", sender);
    post(sender);
    post(b);
    EXPECT_EQ(called, "113");
}

TEST_F(NotificationCenter, RemovingAnotherNameLeavesTheRegistration) {
    observe(a, "a");
    center.removeObserver(*a, "snow", nullptr);
    center.removeObserver(*b, "rain", nullptr); // never added
    post();
    EXPECT_EQ(called, "a");
}

TEST_F(NotificationCenter, AnObserverThatHasEndedIsNotCalledAndItsCallbackEndsWithIt) {
    auto ending = zel::alloc<NSObject>();
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> weak = captured;
    center.addObserver(
        ending, [captured](const NSNotification&) { FAIL() << "called"; }, "rain", nullptr);
    captured.reset();
    EXPECT_FALSE(weak.expired());
    ending.reset();
    EXPECT_TRUE(weak.expired());
    post();
}

TEST_F(NotificationCenter, TheCenterKeepsNoObserverAlive) {
    auto ending = zel::alloc<NSObject>();
    const std::weak_ptr<NSObject> weak = ending;
    observe(ending, "a");
    ending.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(NotificationCenter, AnObserverMayRemoveItselfInItsDestructor) {
    class Ending : public NSObject {
    public:
        explicit Ending(NSNotificationCenter& of) : of_(of) {}
        ~Ending() override { of_.removeObserver(*this, "rain", nullptr); }

    private:
        NSNotificationCenter& of_;
    };
    auto ending = std::make_shared<Ending>(center);
    observe(ending, "x");
    observe(b, "b");
    ending.reset();
    post();
    EXPECT_EQ(called, "b");
}

TEST_F(NotificationCenter, AnObserverRemovedMeanwhileIsNotCalled) {
    observe(a, "a", nullptr, [&] { center.removeObserver(*b, "rain", nullptr); });
    observe(b, "b");
    post();
    EXPECT_EQ(called, "a");
}

TEST_F(NotificationCenter, AnObserverThatEndsMeanwhileIsNotCalled) {
    auto ending = zel::alloc<NSObject>();
    observe(a, "a", nullptr, [&] { ending.reset(); });
    observe(ending, "e");
    observe(b, "b");
    post();
    EXPECT_EQ(called, "ab");
}

TEST_F(NotificationCenter, AnObserverAddedMeanwhileIsCalledFromTheNextPostOn) {
    observe(a, "a", nullptr, [&] {
        if (called == "a") {
            observe(b, "b");
        }
    });
    post();
    EXPECT_EQ(called, "a");
    post();
    EXPECT_EQ(called, "aab");
}

TEST_F(NotificationCenter, AnObserverIsHeldWhileItIsCalled) {
    auto only = zel::alloc<NSObject>();
    const std::weak_ptr<NSObject> weak = only;
    bool alive = false;
    observe(only, "x", nullptr, [&] {
        only.reset();
        alive = !weak.expired();
    });
    post();
    EXPECT_TRUE(alive);
    EXPECT_TRUE(weak.expired());
}

TEST_F(NotificationCenter, CallsAreMadeOnThePostingThread) {
    std::thread::id on;
    observe(a, "a", nullptr, [&] { on = std::this_thread::get_id(); });
    std::thread::id poster;
    zeltest::runElsewhere([&] {
        poster = std::this_thread::get_id();
        post();
    });
    EXPECT_EQ(on, poster);
    EXPECT_NE(on, std::this_thread::get_id());
}

TEST_F(NotificationCenter, NoLockIsHeldDuringACall) {
    observe(a, "a", nullptr, [&] { zeltest::runElsewhere([&] { observe(b, "b"); }); });
    post();
    EXPECT_EQ(called, "a");
}

TEST_F(NotificationCenter, AnExceptionPassesToWhoPostedAndNothingStaysLocked) {
    observe(a, "a", nullptr, [] { throw std::runtime_error("no"); });
    observe(b, "b");
    EXPECT_THROW(post(), std::runtime_error);
    EXPECT_EQ(called, "a");
    zeltest::runElsewhere([&] { center.removeObserver(*a, "rain", nullptr); });
    post();
    EXPECT_EQ(called, "ab");
}

TEST_F(NotificationCenter, NilObserversAndNilCallbacksAreNotKept) {
    observe(nullptr, "x");
    center.addObserver(a, nullptr, "rain", nullptr);
    post();
    EXPECT_EQ(called, "");
}

TEST_F(NotificationCenter, TheDefaultCenterIsOneAndApartFromOthers) {
    EXPECT_EQ(&NSNotificationCenter::defaultCenter(), &NSNotificationCenter::defaultCenter());
    observe(a, "a");
    NSNotificationCenter::defaultCenter().postNotificationName("rain", nullptr);
    EXPECT_EQ(called, "");
}

/// A sender that writes down on which thread it ended.
class PassingSender : public NSObject {
public:
    explicit PassingSender(std::set<std::thread::id>& endedOn) : endedOn_(endedOn) {}
    PassingSender(const PassingSender&) = delete;
    PassingSender& operator=(const PassingSender&) = delete;
    ~PassingSender() override { endedOn_.insert(std::this_thread::get_id()); }

private:
    std::set<std::thread::id>& endedOn_;
};

TEST_F(NotificationCenter, ASenderNeverEndsWhereAnotherIsPostedOrRemovedWithTheTableLocked) {
    constexpr int rounds = 50'000;
    std::set<std::thread::id> endedOn;
    std::thread::id letGoOn;
    std::atomic<bool> done{false};
    zeltest::runAtOnce({[&] {
                            letGoOn = std::this_thread::get_id();
                            for (int round = 0; round < rounds; ++round) {
                                auto passing = std::make_shared<PassingSender>(endedOn);
                                center.addObserver(
                                    a, [](const NSNotification&) {}, "rain", passing);
                                passing.reset(); // while the others look at it, or not
                                center.removeObserver(*a, "rain", nullptr);
                            }
                            done = true;
                        },
                        [&] {
                            while (!done) {
                                post(b);
                            }
                        },
                        [&] {
                            while (!done) {
                                center.removeObserver(*a, "rain", b);
                            }
                        }});
    EXPECT_EQ(endedOn, std::set<std::thread::id>{letGoOn});
}

} // namespace
