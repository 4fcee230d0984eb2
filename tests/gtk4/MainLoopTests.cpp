// SPDX-License-Identifier: Apache-2.0
// The library on the GLib main context, and a bus that never answers.
#include "tests/gtk4/GtkFixture.h"
#include "tests/gtk4/SilentBus.h"
#include "tests/portal/FakePortal.h"
#include "tests/portal/PrivateBus.h"
#include "tests/support/Fastest.h"
#include "tests/support/Threads.h"

#include <ZelStyleKit/ZelGtkModeMenu.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>

#include <gio/gio.h>
#include <glib-unix.h>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

using namespace zeltest;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

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
    zel::ZelPortalOptions options;
    options.busAddress = bus.address();
    Fastest waited;
    for (int round = 0; round < 5 && waited.value() >= 120; ++round) {
        zel::ZelGtkPortalAppearance desktop;
        const auto begin = Clock::now();
        EXPECT_EQ(desktop.start(options), zel::ZelPortalStatus::Connecting);
        const auto passed = Clock::now() - begin;
        waited.add(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
    }
    EXPECT_GE(waited.value(), 100);
    EXPECT_LT(waited.value(), 120);
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

TEST_F(MainLoopTests, FollowingThePortalStartsNoThread) {
    if (!PrivateBus::isInstalled()) {
        GTEST_SKIP() << "dbus-daemon is not installed";
    }
    PrivateBus bus;
    ASSERT_TRUE(bus.start());
    FakePortal portal(bus.address());
    portal.takeName();
    const auto sent = +[](gint, GIOCondition, gpointer fake) -> gboolean {
        static_cast<FakePortal*>(fake)->process();
        return G_SOURCE_CONTINUE;
    };
    const guint source = g_unix_fd_add(portal.fileDescriptor(), G_IO_IN, sent, &portal);
    zel::ZelPortalOptions options;
    options.busAddress = bus.address();

    const auto before = threadCount();
    zel::ZelGtkPortalAppearance desktop;
    desktop.start(options, 0ms);
    EXPECT_TRUE(
        runUntil([&] { return desktop.portal().status() == zel::ZelPortalStatus::Following; }));
    EXPECT_EQ(threadCount(), before);
    portal.setScheme(1);
    portal.emitChange(1);
    EXPECT_TRUE(runUntil([&] { return desktop.portal().colorScheme() == 1; }));
    EXPECT_EQ(threadCount(), before);
    g_source_remove(source);
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

/// Whether GIO, and so GTK, gets on the session bus; without end where that is silent.
bool gioFindsBus() {
    GError* error = nullptr;
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    g_clear_error(&error);
    const bool found = bus != nullptr;
    if (found) {
        g_object_unref(bus);
    }
    return found;
}

TEST_F(MainLoopTests, WhileTheSessionBusIsSilentGtkIsKeptFromIt) {
    const SilentBus bus;
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    {
        zel::ZelGtkPortalAppearance desktop;
        EXPECT_EQ(desktop.start(), zel::ZelPortalStatus::Connecting);
        EXPECT_FALSE(gioFindsBus());
        g_main_context_iteration(nullptr, FALSE);
        EXPECT_NE(std::getenv("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    }
    EXPECT_EQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), bus.address());
}

TEST_F(MainLoopTests, WhenTheSessionBusAnswersAfterAllGtkFindsIt) {
    if (!PrivateBus::isInstalled()) {
        GTEST_SKIP() << "dbus-daemon is not installed";
    }
    const SilentBus silent;
    PrivateBus answering;
    ASSERT_TRUE(answering.start());
    const std::string link = silent.folder() + "/session";
    ASSERT_EQ(::symlink((silent.folder() + "/bus").c_str(), link.c_str()), 0);
    const std::string address = "unix:path=" + link;
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);

    zel::ZelGtkPortalAppearance desktop;
    zel::ZelPortalOptions options;
    options.answerTimeout = 50ms;
    options.retryAfter = 50ms;
    EXPECT_EQ(desktop.start(options, 10ms), zel::ZelPortalStatus::Connecting);
    ASSERT_NE(std::getenv("DBUS_SESSION_BUS_ADDRESS"), address);
    ::unlink(link.c_str());
    ASSERT_EQ(::symlink((answering.folder() + "/bus").c_str(), link.c_str()), 0);
    EXPECT_TRUE(runUntil([&] { return std::getenv("DBUS_SESSION_BUS_ADDRESS") == address; }));
    EXPECT_TRUE(gioFindsBus());
    ::unlink(link.c_str());
}

/// Names compared by GLib, in the locale that the C library is set to.
class GlibComparisonTests : public testing::Test {
protected:
    ~GlibComparisonTests() override { std::setlocale(LC_ALL, "C"); }
    static int compare(std::string_view a, std::string_view b) {
        const int order = zel::localizedCaseInsensitiveCompare(a, b);
        return (order > 0) - (order < 0);
    }
};

TEST_F(GlibComparisonTests, UpperAndLowerCaseAreTheSameInEveryAlphabet) {
    ::setenv("LC_ALL", "C", 1); // by which the library itself would fold ASCII alone
    const zel::ZelGtkMainQueue queue;
    EXPECT_EQ(compare("ÄPFEL", "äpfel"), 0);
    EXPECT_EQ(compare("ЁЖИК", "ёжик"), 0);
    EXPECT_EQ(compare("amber", "Blue"), -1);
    EXPECT_EQ(compare("Amber", "blue"), -1);
}

TEST_F(GlibComparisonTests, NamesAreComparedInTheUsersLocale) {
    if (std::setlocale(LC_ALL, "sv_SE.UTF-8") == nullptr) {
        GTEST_SKIP() << "sv_SE.UTF-8 isn't installed";
    }
    const zel::ZelGtkMainQueue queue;
    EXPECT_EQ(compare("ö", "z"), 1);
    EXPECT_EQ(compare("Å", "ä"), -1);
}

TEST_F(GlibComparisonTests, BrokenBytesAreComparedAsWell) {
    const zel::ZelGtkMainQueue queue;
    EXPECT_EQ(compare("\xFF\xC3", "\xFE\x80"), 0);
    EXPECT_NE(compare("a\xFF", "b"), 0);
}

TEST_F(GlibComparisonTests, WithoutItGlibIsNotAsked) {
    { const zel::ZelGtkMainQueue queue; }
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(compare("Ä", "ä"), -1); // by code points, as the environment has it
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

TEST_F(ModeMenuTests, AModeWithoutAnIdentifierIsShownAndCannotBeChosen) {
    zel::ZelStyleManager::setup();
    const auto& manager = zel::ZelStyleManager::sharedStyleManager();
    manager->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier(std::nullopt, 5, "Sepia"));
    manager->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier("own", 6, std::nullopt));
    const zel::ZelGtkModeMenu menu(manager, "win");
    ASSERT_EQ(g_menu_model_get_n_items(menu.menu()), 5);
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_LABEL), "Sepia");
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_ACTION), "win.zel-mode");
    EXPECT_EQ(text(menu, 1, G_MENU_ATTRIBUTE_TARGET), "(none)");
    EXPECT_EQ(text(menu, 2, G_MENU_ATTRIBUTE_LABEL), "(none)");
    EXPECT_EQ(text(menu, 2, G_MENU_ATTRIBUTE_TARGET), "own");
}

TEST_F(ModeMenuTests, WithoutAManagerTheMenuIsEmpty) {
    const zel::ZelGtkModeMenu menu(nullptr, "app");
    EXPECT_EQ(g_menu_model_get_n_items(menu.menu()), 0);
    EXPECT_EQ(state(menu), "");
}

} // namespace
