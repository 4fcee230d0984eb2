// SPDX-License-Identifier: Apache-2.0
// Against a bus that takes connections and never says a word.
#include "tests/support/Fastest.h"

#include <ZelStyleKit/ZelQtPortalAppearance.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using zel::ZelPortalStatus;

class QtPortalAppearanceTests : public testing::Test {
protected:
    void SetUp() override {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        const std::string path = folder.filePath("bus").toStdString();
        ASSERT_LT(path.size(), sizeof name.sun_path);
        std::memcpy(name.sun_path, path.c_str(), path.size());
        const void* const untyped = &name;
        ASSERT_EQ(bind(listener, static_cast<const sockaddr*>(untyped), sizeof name), 0);
        ASSERT_EQ(listen(listener, 100), 0);
        options.busAddress = "unix:path=" + path;
        options.retryAfter = 0ms;
    }
    ~QtPortalAppearanceTests() override { close(listener); }

    /// Runs Qt's event loop, and nothing else, until the condition holds or 10 s have passed.
    static bool runUntil(const std::function<bool()>& condition) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < 10000) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return condition();
    }

    const QTemporaryDir folder;
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    zel::ZelPortalOptions options;
};

TEST_F(QtPortalAppearanceTests, ABusThatNeverAnswersCostsTheFirstWaitAndNoMore) {
    zeltest::Fastest waited;
    for (int round = 0; round < 5 && waited.value() >= 120; ++round) {
        QElapsedTimer clock;
        clock.start();
        const zel::ZelQtPortalAppearance portal(options);
        waited.add(static_cast<long>(clock.elapsed()));
        EXPECT_EQ(portal.portal().status(), ZelPortalStatus::Connecting);
    }
    EXPECT_GE(waited.value(), 100);
    EXPECT_LT(waited.value(), 120);
}

TEST_F(QtPortalAppearanceTests, TheFirstWaitCanBeLeftOut) {
    QElapsedTimer clock;
    clock.start();
    const zel::ZelQtPortalAppearance portal(options, 0ms);
    EXPECT_LT(clock.elapsed(), 90);
}

TEST_F(QtPortalAppearanceTests, TimesThatPassAreNoticedOnTheEventLoop) {
    options.answerTimeout = 50ms;
    const zel::ZelQtPortalAppearance portal(options, 0ms);
    EXPECT_TRUE(runUntil([&] { return portal.portal().status() == ZelPortalStatus::NoBus; }));
    EXPECT_EQ(portal.portal().reason(), "The session bus has not answered within 50 ms.");
}

TEST_F(QtPortalAppearanceTests, ABusThatClosesIsNoticedOnTheEventLoop) {
    options.answerTimeout = 60s;
    const zel::ZelQtPortalAppearance portal(options, 0ms);
    ASSERT_EQ(portal.portal().status(), ZelPortalStatus::Connecting);
    close(accept(listener, nullptr, nullptr));
    EXPECT_TRUE(runUntil([&] { return portal.portal().status() == ZelPortalStatus::NoBus; }));
}

TEST_F(QtPortalAppearanceTests, ASilentSessionBusDoesNotHoldUpQtAndStaysInTheEnvironment) {
    const QByteArray address = QByteArray::fromStdString(options.busAddress);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    const zel::ZelQtPortalAppearance portal;
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(QDBusConnection::sessionBus().isConnected());
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_EQ(qgetenv("DBUS_SESSION_BUS_ADDRESS"), address);
}

TEST_F(QtPortalAppearanceTests, ItMayBeEndedByWhomItTells) {
    std::optional<zel::ZelQtPortalAppearance> portal;
    options.answerTimeout = 20ms;
    options.statusChanged = [&](ZelPortalStatus status, const std::string&) {
        if (status == ZelPortalStatus::NoBus) {
            portal.reset();
        }
    };
    portal.emplace(options, 0ms);
    EXPECT_TRUE(runUntil([&] { return !portal.has_value(); }));
}

} // namespace
