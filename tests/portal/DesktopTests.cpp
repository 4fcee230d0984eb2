// SPDX-License-Identifier: Apache-2.0
// Against the real portal, in a session of the tests' own: see run_in_a_desktop.sh.
#include "PortalFixture.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/NSView.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleManager.h>

#include <csignal>
#include <cstdlib>

#include <sys/types.h>

using namespace zeltest;

namespace {

void setDesktop(const std::string& colorScheme) {
    const std::string command =
        "gsettings set org.gnome.desktop.interface color-scheme " + colorScheme;
    ASSERT_EQ(std::system(command.c_str()), 0);
}

/// Kills who has the name on the session bus. Everybody on this bus was started for these tests.
void killOwnerOf(const char* name) {
    sd_bus* bus = nullptr;
    ASSERT_GE(sd_bus_open_user(&bus), 0);
    sd_bus_message* answer = nullptr;
    std::uint32_t process = 0;
    EXPECT_GE(sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "GetConnectionUnixProcessID", nullptr,
                                 &answer, "s", name),
              0);
    EXPECT_GT(sd_bus_message_read(answer, "u", &process), 0);
    sd_bus_message_unref(answer);
    sd_bus_close_unref(bus);
    ASSERT_GT(process, 1U);
    ASSERT_EQ(::kill(static_cast<pid_t>(process), SIGKILL), 0);
}

} // namespace

class DesktopTests : public testing::Test {
protected:
    Host host{""};

    void SetUp() override {
        host.options.retryAfter = 200ms;
        setDesktop("default");
    }
    bool runUntil(const std::function<bool()>& condition) {
        return host.run([&] {
            zel::NSMainQueue::mainQueue().drain();
            return condition();
        });
    }
    void follow() {
        host.start();
        ASSERT_TRUE(runUntil([&] { return host.status() == ZelPortalStatus::Following; }))
            << host.appearance->reason();
    }
};

TEST_F(DesktopTests, EachSwitchOfTheDesktopCallsEachChangeHandlerOnce) {
    struct Listener {
        std::shared_ptr<zel::NSView> view = zel::alloc<zel::NSView>();
        std::vector<bool> dark; // of the style, at each call
    };
    follow();
    zel::ZelStyleManager::setup();
    std::vector<Listener> listeners(3);
    for (auto& listener : listeners) {
        listener.view->init();
        zel::ZelStyleDomain::defaultDomain()->registerChangeHandler(
            [&](const auto&, const std::shared_ptr<zel::ZelStyle>& style, auto) {
                listener.dark.push_back(style->isDarkStyle());
            },
            listener.view);
    }
    const auto heard = [&](const std::vector<bool>& calls) {
        return runUntil([&] { return listeners.back().dark.size() >= calls.size(); }) &&
               listeners[0].dark == calls && listeners[1].dark == calls &&
               listeners[2].dark == calls;
    };
    EXPECT_TRUE(heard({false})); // the call at registration
    setDesktop("prefer-dark");
    EXPECT_TRUE(heard({false, true}));
    EXPECT_TRUE(isDark());
    setDesktop("default");
    EXPECT_TRUE(heard({false, true, false}));
    EXPECT_FALSE(isDark());
    setDesktop("prefer-dark");
    EXPECT_TRUE(heard({false, true, false, true}));
    EXPECT_EQ(host.heard, (std::vector{ZelPortalStatus::Connecting, ZelPortalStatus::Following}));
}

TEST_F(DesktopTests, ADesktopThatIsDarkIsDarkFromTheFirstAnswer) {
    setDesktop("prefer-dark");
    host.start();
    EXPECT_EQ(host.waitForFirstAnswer(20s), ZelPortalStatus::Following);
    EXPECT_TRUE(isDark());
    EXPECT_EQ(host.appearance->colorScheme(), 1U);
}

TEST_F(DesktopTests, APortalThatIsKilledIsCalledForAgainAndAsked) {
    setDesktop("prefer-dark");
    follow();
    killOwnerOf("org.freedesktop.portal.Desktop");
    ASSERT_TRUE(runUntil([&] { return host.status() == ZelPortalStatus::Lost; }));
    EXPECT_TRUE(isDark());
    setDesktop("default");
    ASSERT_TRUE(runUntil([&] { return host.status() == ZelPortalStatus::Following; }));
    EXPECT_TRUE(runUntil([] { return !isDark(); }));
    setDesktop("prefer-dark");
    EXPECT_TRUE(runUntil(isDark));
}

// Nobody says that a backend has died. Asked, the portal starts another one or gives an error.
TEST_F(DesktopTests, ABackendThatIsKilledShowsWhenThePortalIsAskedAgain) {
    setDesktop("prefer-dark");
    follow();
    ASSERT_TRUE(isDark());
    killOwnerOf("org.freedesktop.impl.portal.desktop.gtk");
    setDesktop("default");
    host.refresh();
    EXPECT_TRUE(runUntil([] { return !isDark(); }));
}

// The backend needs a display; the portal is there without it, and can't answer.
TEST_F(DesktopTests, WithoutADisplayTheHostHearsOfItAndStaysLight) {
    ASSERT_EQ(std::getenv("DISPLAY"), nullptr);
    setDesktop("prefer-dark");
    host.start();
    ASSERT_TRUE(runUntil([&] { return host.status() == ZelPortalStatus::NoAnswer; }));
    EXPECT_FALSE(isDark());
    EXPECT_NE(host.appearance->reason().find("no colour scheme"), std::string::npos)
        << host.appearance->reason();
}
