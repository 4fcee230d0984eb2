// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include <atomic>
#include <thread>

using namespace zeltest;

/// Portals and strangers that say too much, or what makes no sense.
class LyingTests : public PortalTests {};

TEST_F(LyingTests, ASignalOfAWrongShapeIsNoSignal) {
    using Fill = std::function<void(sd_bus_message*)>;
    const Fill shapes[] = {
        [](sd_bus_message*) {},
        [](sd_bus_message* signal) { sd_bus_message_append(signal, "u", 1); },
        [](sd_bus_message* signal) { sd_bus_message_append(signal, "s", "color-scheme"); },
        [](sd_bus_message* signal) {
            sd_bus_message_append(signal, "sv", "org.freedesktop.appearance", "u", 1);
        },
        [](sd_bus_message* signal) {
            sd_bus_message_append(signal, "(ss)", "org.freedesktop.appearance", "color-scheme");
        },
        [](sd_bus_message* signal) {
            sd_bus_message_append(signal, "as", 2, "org.freedesktop.appearance", "color-scheme");
        },
    };
    follow();
    for (const Fill& shape : shapes) {
        portal->emitChangeOfShape(shape, portal->asker().c_str());
    }
    settle(*portal);
    EXPECT_EQ(portal->questions(), 1);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
    portal->setScheme(1);
    portal->emitChange(1);
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
}

TEST_F(LyingTests, ASignalOfAnotherObjectInterfaceOrMemberIsNoSignal) {
    constexpr char path[] = "/org/freedesktop/portal/desktop";
    constexpr char interface[] = "org.freedesktop.portal.Settings";
    constexpr char member[] = "SettingChanged";
    follow();
    const char* const asker = portal->asker().c_str();
    portal->emitChangeAs("/org/freedesktop/portal/desktop/other", interface, member, asker);
    portal->emitChangeAs("/", interface, member, asker);
    portal->emitChangeAs(path, "org.freedesktop.portal.Camera", member, asker);
    portal->emitChangeAs(path, "org.freedesktop.impl.portal.Settings", member, asker);
    portal->emitChangeAs(path, interface, "SettingsChanged", asker);
    portal->emitChangeAs(path, interface, "Read", asker);
    settle(*portal);
    EXPECT_EQ(portal->questions(), 1);
    portal->emitChangeAs(path, interface, member, asker);
    settle(*portal);
    EXPECT_EQ(portal->questions(), 2);
}

// Until then nobody but the bus knows who the portal is.
TEST_F(LyingTests, SignalsOfAStrangerBeforeTheFirstAnswerAreOneMoreQuestionToThePortal) {
    portal->keepQuestions();
    host->start();
    ASSERT_TRUE(host->run([&] { return portal->questions() == 1; }, {&*portal}));
    FakePortal stranger(bus.address());
    for (int sent = 0; sent < 100; ++sent) {
        stranger.emitChange(1, portal->asker().c_str());
    }
    settle(stranger);
    EXPECT_EQ(portal->questions(), 1);
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::Connecting}));
    portal->answerKept(number(0));
    ASSERT_TRUE(host->run([&] { return portal->questions() == 2; }, {&*portal}));
    portal->answerKept(number(0));
    stranger.emitChange(1, portal->asker().c_str()); // who isn't the portal: that is known now
    settle(stranger);
    settle(*portal);
    EXPECT_EQ(portal->questions(), 2);
    EXPECT_EQ(stranger.questions(), 0);
    EXPECT_EQ(host->status(), ZelPortalStatus::Following);
    EXPECT_FALSE(isDark());
}

TEST_F(LyingTests, AnAnswerOfManyMegabytesIsLight) {
    followDark();
    portal->setAnswer([](sd_bus_message* question) {
        const std::vector<std::uint8_t> many(std::size_t{8} << 20, 1);
        sd_bus_message* reply = nullptr;
        ASSERT_GE(sd_bus_message_new_method_return(question, &reply), 0);
        ASSERT_GE(sd_bus_message_open_container(reply, 'v', "ay"), 0);
        ASSERT_GE(sd_bus_message_append_array(reply, 'y', many.data(), many.size()), 0);
        ASSERT_GE(sd_bus_message_close_container(reply), 0);
        ASSERT_GE(sd_bus_send(nullptr, reply, nullptr), 0);
        sd_bus_message_unref(reply);
    });
    portal->emitChange(1);
    ASSERT_TRUE(host->runUntilDark(false, {&*portal}));
    EXPECT_EQ(host->appearance->colorScheme(), std::nullopt);
}

TEST_F(LyingTests, AFloodFromAStrangerIsNotFollowed) {
    follow();
    FakePortal stranger(bus.address());
    for (int sent = 0; sent < 2000; ++sent) {
        stranger.emitChange(1, portal->asker().c_str());
        if (sent % 200 == 0) {
            stranger.finishSending();
        }
    }
    settle(stranger);
    EXPECT_EQ(portal->questions(), 1);
    EXPECT_FALSE(isDark());
}

/// A portal on a thread of its own, which floods the bus as long as it lives instead of answering.
class FloodingPortal {
public:
    explicit FloodingPortal(FakePortal& portal) : portal_(portal), thread_([this] { run(); }) {}
    ~FloodingPortal() {
        over_ = true;
        thread_.join();
    }
    FloodingPortal(const FloodingPortal&) = delete;
    FloodingPortal& operator=(const FloodingPortal&) = delete;

private:
    void run() {
        portal_.keepQuestions();
        while (!over_) {
            portal_.process();
            portal_.emitFlood(portal_.questions() > 0 ? 500 : 1);
        }
    }

    FakePortal& portal_;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

TEST_F(LyingTests, AFloodDoesNotProlongTheWaitForTheFirstAnswer) {
    const FloodingPortal flooding(*portal);
    host->start();
    const auto begin = Clock::now();
    EXPECT_EQ(host->waitForFirstAnswer(300ms), ZelPortalStatus::Connecting);
    EXPECT_GE(Clock::now() - begin, 300ms);
}
