// SPDX-License-Identifier: Apache-2.0
// The library on the GLib main context, and a bus that never answers.
#include "tests/gtk4/GtkFixture.h"

#include <ZelStyleKit/ZelGtkModeMenu.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace zeltest;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A bus that takes connections and never says anything.
class SilentBus {
public:
    SilentBus() {
        std::string name = "/tmp/zel-silent-XXXXXX";
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("no folder for the bus");
        }
        folder_ = name;
        sockaddr_un at{};
        at.sun_family = AF_UNIX;
        const std::string path = folder_ + "/bus";
        std::copy(path.begin(), path.end(), std::begin(at.sun_path));
        socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::bind(socket_, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0 ||
            ::listen(socket_, 8) != 0) {
            throw std::runtime_error("no socket for the bus");
        }
    }
    ~SilentBus() {
        ::close(socket_);
        ::unlink((folder_ + "/bus").c_str());
        ::rmdir(folder_.c_str());
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    [[nodiscard]] std::string address() const { return "unix:path=" + folder_ + "/bus"; }

private:
    std::string folder_;
    int socket_ = -1;
};

class MainLoopTests : public StylingTests {
protected:
    static bool runUntil(const std::function<bool()>& condition) {
        const auto end = Clock::now() + 20s;
        while (!condition() && Clock::now() < end) {
            g_main_context_iteration(nullptr, TRUE);
        }
        return condition();
    }
};

TEST_F(MainLoopTests, WhatIsQueuedBeforeAndAfterRunsOnTheLoop) {
    std::vector<int> ran;
    zel::NSMainQueue::mainQueue().async([&] { ran.push_back(1); });
    const zel::ZelGtkMainQueue queue;
    EXPECT_TRUE(ran.empty());
    EXPECT_TRUE(runUntil([&] { return ran.size() == 1; }));
    zel::NSMainQueue::mainQueue().async([&] {
        ran.push_back(2);
        zel::NSMainQueue::mainQueue().async([&] { ran.push_back(3); });
    });
    EXPECT_TRUE(runUntil([&] { return ran.size() == 3; }));
    EXPECT_EQ(ran, (std::vector{1, 2, 3}));
    EXPECT_FALSE(g_main_context_pending(nullptr)) << "nothing is left to wake the loop";
}

TEST_F(MainLoopTests, ATaskOfAnotherThreadWakesTheSleepingLoop) {
    const zel::ZelGtkMainQueue queue;
    g_main_context_iteration(nullptr, FALSE);
    const auto main = std::this_thread::get_id();
    std::thread::id ranOn;
    std::thread other(
        [&] { zel::NSMainQueue::mainQueue().async([&] { ranOn = std::this_thread::get_id(); }); });
    EXPECT_TRUE(runUntil([&] { return ranOn != std::thread::id(); }));
    EXPECT_EQ(ranOn, main);
    other.join();
}

TEST_F(MainLoopTests, ALoopOfItsOwnMayRunTheQueue) {
    GMainContext* const context = g_main_context_new();
    {
        bool ran = false;
        const zel::ZelGtkMainQueue queue(context);
        zel::NSMainQueue::mainQueue().async([&] { ran = true; });
        g_main_context_iteration(nullptr, FALSE);
        EXPECT_FALSE(ran);
        g_main_context_iteration(context, FALSE);
        EXPECT_TRUE(ran);
    }
    g_main_context_unref(context);
}

TEST_F(MainLoopTests, ABusThatNeverAnswersHoldsTheStartUpNoLongerThanItMay) {
    const SilentBus bus;
    zel::ZelGtkPortalAppearance desktop;
    zel::ZelPortalOptions options;
    options.busAddress = bus.address();
    const auto begin = Clock::now();
    EXPECT_EQ(desktop.start(options), zel::ZelPortalStatus::Connecting);
    const auto waited = Clock::now() - begin;
    EXPECT_GE(waited, 90ms);
    EXPECT_LT(waited, 2s); // 100 ms, on a machine under load
}

TEST_F(MainLoopTests, ThePortalsTimerRunsOnTheLoop) {
    const SilentBus bus;
    std::vector<zel::ZelPortalStatus> heard;
    zel::ZelGtkPortalAppearance desktop;
    zel::ZelPortalOptions options;
    options.busAddress = bus.address();
    options.answerTimeout = 50ms;
    options.retryAfter = 50ms;
    options.statusChanged = [&](auto status, const auto&) { heard.push_back(status); };
    desktop.start(options, 0ms);
    // The retry connects afresh, to another descriptor.
    EXPECT_TRUE(runUntil([&] { return heard.size() >= 2; }));
    EXPECT_EQ(heard.at(1), zel::ZelPortalStatus::NoBus);
}

TEST_F(MainLoopTests, ThePortalMayEndInItsOwnCallback) {
    const SilentBus bus;
    std::optional<zel::ZelGtkPortalAppearance> desktop(std::in_place);
    bool ended = false;
    zel::ZelPortalOptions options;
    options.busAddress = bus.address();
    options.answerTimeout = 10ms;
    options.statusChanged = [&](auto status, const auto&) {
        if (status != zel::ZelPortalStatus::Connecting) {
            desktop.reset();
            ended = true;
        }
    };
    desktop->start(options, 0ms);
    EXPECT_TRUE(runUntil([&] { return ended; }));
}

class ModeMenuTests : public StylingTests {
protected:
    static std::string state(const zel::ZelGtkModeMenu& menu) {
        GVariant* const state = g_action_get_state(menu.action());
        const std::string text = g_variant_get_string(state, nullptr);
        g_variant_unref(state);
        return text;
    }
    static std::string text(const zel::ZelGtkModeMenu& menu, int item, const char* attribute) {
        gchar* found = nullptr;
        if (!g_menu_model_get_item_attribute(menu.menu(), item, attribute, "s", &found)) {
            return "(none)";
        }
        const std::string copy = found;
        g_free(found);
        return copy;
    }
};

TEST_F(ModeMenuTests, TheMenuShowsTheModesAndObeysThem) {
    zel::ZelStyleManager::setup();
    const auto& manager = zel::ZelStyleManager::sharedStyleManager();
    const zel::ZelGtkModeMenu menu(manager, "win");
    ASSERT_EQ(g_menu_model_get_n_items(menu.menu()), 3);
    EXPECT_EQ(text(menu, 0, G_MENU_ATTRIBUTE_TARGET), "always-light");
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_TARGET), "always-dark");
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_LABEL), "Dark");
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_ACTION), "win.zel-mode");
    EXPECT_EQ(text(menu, 2, G_MENU_ATTRIBUTE_TARGET), "follow-system");
    EXPECT_EQ(state(menu), "follow-system");

    g_action_activate(menu.action(), g_variant_new_string("always-dark"));
    EXPECT_EQ(state(menu), "always-dark");
    EXPECT_EQ(manager->activeModeIdentifier(), zel::NSUserDefaultsValue("always-dark"));
    EXPECT_TRUE(zel::ZelStyle::forStyleable(nullptr)->isDarkStyle());
}

TEST_F(ModeMenuTests, AChoiceMadeElsewhereIsShownAfterARefresh) {
    zel::ZelStyleManager::setup();
    const auto& manager = zel::ZelStyleManager::sharedStyleManager();
    zel::ZelGtkModeMenu menu(manager, "app");
    manager->setActiveModeIdentifier("always-light");
    manager->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier("sepia", 50, "Sepia"));
    menu.refresh();
    EXPECT_EQ(state(menu), "always-light");
    ASSERT_EQ(g_menu_model_get_n_items(menu.menu()), 4);
    EXPECT_EQ(text(menu, 2, G_MENU_ATTRIBUTE_LABEL), "Sepia");
}

TEST_F(ModeMenuTests, WithoutAManagerTheMenuIsEmpty) {
    const zel::ZelGtkModeMenu menu(nullptr, "app");
    EXPECT_EQ(g_menu_model_get_n_items(menu.menu()), 0);
    EXPECT_EQ(state(menu), "");
}

} // namespace
