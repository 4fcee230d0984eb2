// SPDX-License-Identifier: Apache-2.0
#include "PortalFixture.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace zeltest;

namespace {

/// A socket that something listens on, but never as a bus does.
/// Owns: the descriptors; the socket's folder belongs to somebody else.
class StuckBus {
public:
    explicit StuckBus(const std::string& folder, int backlog = 8)
        : path_(folder + "/stuck"), listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const auto name = address();
        EXPECT_EQ(::bind(listener_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        EXPECT_EQ(::listen(listener_, backlog), 0);
    }
    ~StuckBus() {
        for (const int descriptor : {listener_, peer_, filler_}) {
            ::close(descriptor);
        }
    }
    StuckBus(const StuckBus&) = delete;
    StuckBus& operator=(const StuckBus&) = delete;

    /// Takes the connection that waits and says something.
    void say(const std::string& text) {
        peer_ = ::accept(listener_, nullptr, nullptr);
        EXPECT_EQ(::write(peer_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void hangUp() { ::close(std::exchange(peer_, -1)); }
    /// Fills the queue of waiting connections, so that the next one would have to wait.
    void fill() {
        filler_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const auto name = address();
        EXPECT_EQ(::connect(filler_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
    }
    [[nodiscard]] std::string busAddress() const { return "unix:path=" + path_; }

private:
    [[nodiscard]] sockaddr_un address() const {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        std::strncpy(name.sun_path, path_.c_str(), sizeof name.sun_path - 1);
        return name;
    }

    std::string path_;
    int listener_ = -1;
    int peer_ = -1;
    int filler_ = -1;
};

} // namespace

class BusFaultTests : public PortalTests {
protected:
    void SetUp() override {
        PortalTests::SetUp();
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
        ::unsetenv("XDG_RUNTIME_DIR");
    }
    void expectNoBusAtOnce() {
        host->start();
        EXPECT_EQ(host->status(), ZelPortalStatus::NoBus) << host->appearance->reason();
        EXPECT_EQ(host->waitForFirstAnswer(20s), ZelPortalStatus::NoBus);
        EXPECT_EQ(host->heard.back(), ZelPortalStatus::NoBus);
        EXPECT_EQ(host->appearance->fileDescriptor(), -1);
        EXPECT_FALSE(isDark());
    }
};

TEST_F(BusFaultTests, WithoutASessionBusTheHostHearsOfItAtOnceAndStaysLight) {
    host->options.busAddress.clear();
    host->options.retryAfter = 1ms;
    expectNoBusAtOnce();
    EXPECT_EQ(host->heard, (std::vector{ZelPortalStatus::NoBus}));
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt); // it never gets one
}

TEST_F(BusFaultTests, ADarkApplicationWithoutASessionBusTurnsLight) {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    host->options.busAddress.clear();
    expectNoBusAtOnce();
}

TEST_F(BusFaultTests, AnAddressWithoutABusIsToldAtOnce) {
    const std::string addresses[] = {"unix:path=" + bus.folder() + "/nothing",
                                     "unix:",
                                     "nonsense",
                                     "tcp:host=localhost,port=1",
                                     "unixexec:path=/bin/true",
                                     ";;"};
    for (const auto& address : addresses) {
        host->options.busAddress = address;
        expectNoBusAtOnce();
    }
}

TEST_F(BusFaultTests, TheEnvironmentNamesTheBus) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("tcp:host=x,port=1;" + bus.address()).c_str(), 1);
    host->options.busAddress.clear();
    followDark();
}

TEST_F(BusFaultTests, TheUsersRuntimeFolderHasTheBusWhereNothingElseIsSaid) {
    const std::string folder = bus.folder() + "/a folder; 100 %, \xc3\xa4=";
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink(bus.folder() + "/bus", folder + "/bus");
    ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "", 1);
    host->options.busAddress.clear();
    followDark();
}

TEST_F(BusFaultTests, ABusThatNeverAnswersDoesNotHoldUpTheHost) {
    const StuckBus stuck(bus.folder());
    host->options.busAddress = stuck.busAddress();
    const auto begin = Clock::now();
    host->start();
    EXPECT_EQ(host->waitForFirstAnswer(100ms), ZelPortalStatus::Connecting);
    EXPECT_FALSE(host->appearance->busHasAnswered());
    EXPECT_GE(Clock::now() - begin, 100ms);
    EXPECT_FALSE(isDark());
}

TEST_F(BusFaultTests, ABusThatNeverAnswersIsToldInTime) {
    const StuckBus stuck(bus.folder(), 16); // more connections than there are tries
    host->options.busAddress = stuck.busAddress();
    host->options.answerTimeout = 30ms;
    expectToldInTime(ZelPortalStatus::NoBus, [&] {
        host->rounds = 0;
        const auto asked = Clock::now();
        host->start();
        return asked;
    });
    EXPECT_NE(host->appearance->reason().find("30 ms"), std::string::npos);
    EXPECT_LT(host->rounds, 20); // waiting is not spinning
}

TEST_F(BusFaultTests, ABusThatTakesNoMoreConnectionsDoesNotHoldUpTheHost) {
    StuckBus stuck(bus.folder(), 0);
    stuck.fill();
    host->options.busAddress = stuck.busAddress();
    expectNoBusAtOnce();
}

TEST_F(BusFaultTests, WhatIsNoBusIsToldAndLeft) {
    StuckBus other(bus.folder());
    host->options.busAddress = other.busAddress();
    host->start();
    other.say("HTTP/1.1 400 Bad Request\r\n\r\n\r\n\r\n");
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoBus));
    EXPECT_EQ(host->appearance->fileDescriptor(), -1);
}

TEST_F(BusFaultTests, ABusThatTalksNonsenseAfterLettingUsInIsToldAndLeft) {
    StuckBus other(bus.folder());
    host->options.busAddress = other.busAddress();
    host->start();
    other.say("DATA\r\nOK 0123456789abcdef0123456789abcdef\r\n" + std::string(4096, 'x'));
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoBus));
    EXPECT_EQ(host->appearance->fileDescriptor(), -1);
    EXPECT_LT(host->rounds, 20);
}

TEST_F(BusFaultTests, ABusThatStandsStillIsToldAndItsLateAnswerCounts) {
    host->options.answerTimeout = 100ms;
    followDark();
    bus.freeze();
    host->refresh();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoAnswer));
    EXPECT_FALSE(isDark());
    bus.thaw();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(BusFaultTests, AFrozenBusIsLeftAtOnce) {
    ::alarm(30); // whoever waits for this bus waits for good
    followDark();
    bus.freeze();
    host->refresh();
    host->process(); // asks
    host->stop();
    EXPECT_EQ(host->status(), ZelPortalStatus::Stopped);
    EXPECT_TRUE(isDark());
    for (int times = 0; times < 2; ++times) {
        host->start();
        host->process(); // greets
        EXPECT_EQ(host->status(), ZelPortalStatus::Connecting);
        host->renew();
    }
    ::alarm(0);
}

TEST_F(BusFaultTests, ABusThatHangsUpIsToldAndLeft) {
    StuckBus other(bus.folder());
    host->options.busAddress = other.busAddress();
    host->start();
    other.say("");
    other.hangUp();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::NoBus));
    EXPECT_EQ(host->appearance->fileDescriptor(), -1);
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
}

TEST_F(BusFaultTests, ADeadBusIsToldAndTheAppearanceStays) {
    followDark();
    bus.stop();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost));
    EXPECT_TRUE(isDark());
    EXPECT_EQ(host->appearance->fileDescriptor(), -1);
    EXPECT_EQ(host->appearance->nextTimeout(), std::nullopt);
}

TEST_F(BusFaultTests, ABusThatComesBackIsFollowedAgain) {
    host->options.retryAfter = 1ms;
    followDark();
    bus.stop();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost));
    ASSERT_TRUE(bus.start());
    newPortal(); // which says light
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_FALSE(isDark());
    portal->setScheme(1);
    portal->emitChange(1);
    EXPECT_TRUE(host->runUntilDark(true, {&*portal}));
}

TEST_F(BusFaultTests, ABusThatComesLaterIsFollowed) {
    bus.stop();
    host->options.retryAfter = 1ms;
    host->start();
    EXPECT_EQ(host->status(), ZelPortalStatus::NoBus);
    ASSERT_TRUE(bus.start());
    newPortal();
    portal->setScheme(1);
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Following, {&*portal}));
    EXPECT_TRUE(isDark());
}

TEST_F(BusFaultTests, StartingAgainOnADeadBusTurnsLight) {
    followDark();
    bus.stop();
    ASSERT_TRUE(host->runUntil(ZelPortalStatus::Lost));
    expectNoBusAtOnce();
}
