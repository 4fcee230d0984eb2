// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include <stdexcept>

using namespace zeltest;

namespace {

/// Does something when the application's appearance changes.
class Observer : public zel::NSObject {
public:
    std::function<void()> action;
    void observeValueForKeyPath(std::string_view, zel::NSObject&, const zel::NSKeyValueChange&,
                                const void*) override {
        action();
    }
};

std::shared_ptr<Observer> observe(std::function<void()> action) {
    auto observer = zel::alloc<Observer>();
    observer->action = std::move(action);
    zel::NSApplication::sharedApplication()->addObserver(
        observer, "effectiveAppearance", zel::NSKeyValueObservingOptions::Default, nullptr);
    return observer;
}

} // namespace

class CallbackTests : public PortalTests {
protected:
    // Runs `action` when the status becomes Following.
    void whenFollowing(std::function<void()> action) {
        host->options.statusChanged = [action = std::move(action)](ZelPortalStatus status,
                                                                   const std::string&) {
            if (status == ZelPortalStatus::Following) {
                action();
            }
        };
    }
};

TEST_F(CallbackTests, TheAppearanceIsSetBeforeTheStatusIsTold) {
    bool dark = false;
    whenFollowing([&] { dark = isDark(); });
    followDark();
    EXPECT_TRUE(dark);
}

TEST_F(CallbackTests, ACallbackMayStop) {
    whenFollowing([&] { host->stop(); });
    portal->setScheme(1);
    host->start();
    EXPECT_TRUE(host->runUntil(ZelPortalStatus::Stopped, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(CallbackTests, ACallbackMayDestroyWhatCallsIt) {
    bool destroyed = false;
    whenFollowing([&] {
        host->renew();
        destroyed = true;
    });
    portal->setScheme(1);
    host->start();
    EXPECT_TRUE(host->run([&] { return destroyed; }, {&*portal}));
}

TEST_F(CallbackTests, AnObserverMayDestroyWhatSetTheAppearance) {
    const auto observer = observe([&] { host->renew(); });
    portal->setScheme(1);
    host->start();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(host->status(), ZelPortalStatus::Stopped);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting}));
}

TEST_F(CallbackTests, ACallbackMayStartAnew) {
    int times = 0;
    whenFollowing([&] {
        if (++times == 1) {
            host->start();
        }
    });
    host->start();
    EXPECT_TRUE(host->run([&] { return times == 2; }, {&*portal}));
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
    EXPECT_EQ(portal->questions(), 2);
}

TEST_F(CallbackTests, ACallbackMayProcess) {
    int depth = 0;
    whenFollowing([&] {
        ++depth;
        host->process();
    });
    followDark();
    EXPECT_EQ(depth, 1);
}

TEST_F(CallbackTests, ACallbackMayAskThePortalAgain) {
    int times = 0;
    whenFollowing([&] {
        ++times;
        host->appearance->refresh();
        portal->setScheme(1);
    });
    host->start();
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
    EXPECT_EQ(times, 1);
    EXPECT_EQ(portal->questions(), 2);
}

TEST_F(CallbackTests, ACallbackMayWaitForTheAnswerThatItHas) {
    std::optional<ZelPortalStatus> awaited;
    whenFollowing([&] { awaited = host->appearance->waitForFirstAnswer(1000ms); });
    followDark();
    EXPECT_EQ(awaited, ZelPortalStatus::Following);
}

TEST_F(CallbackTests, AnExceptionOfACallbackPassesAndFollowingGoesOn) {
    whenFollowing([] { throw std::runtime_error("the host's own"); });
    host->start();
    EXPECT_THROW(host->runUntil(ZelPortalStatus::Stopped, {&*portal}), std::runtime_error);
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
    portal->setScheme(1);
    portal->emitChange(1);
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
}

TEST_F(CallbackTests, AnExceptionOfAnObserverPassesAndTheStatusIsToldLater) {
    auto observer = observe([] { throw std::runtime_error("the observer's own"); });
    portal->setScheme(1);
    host->start();
    EXPECT_THROW(host->runUntil(ZelPortalStatus::Stopped, {&*portal}), std::runtime_error);
    EXPECT_TRUE(isDark());
    observer.reset();
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting}));
    EXPECT_EQ(host->appearance->nextTimeout(), 0us);
    host->process();
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
}
