// SPDX-License-Identifier: Apache-2.0
// A gallery: controls, every predefined attribute, a part of the window that is pinned to a scheme,
// a style derived from its parent, and a menu to choose a mode from. Also what it takes to have a
// GTK application follow the desktop, in order.
#include "FirstFrame.h"
#include "GalleryOptions.h"
#include "GalleryStyleSheet.h"
#include "GalleryWindow.h"
#include "TintedStyle.h"

#include <ZelStyleKit/ZelGtkMainQueue.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>
#include <ZelStyleKit/ZelGtkStyleProvider.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>
#include <optional>

int main(int argc, char** argv) {
    const auto started = gallery::Clock::now(); // before anything that takes time
    const auto options = gallery::optionsOf(argc, argv);
    zel::NSProcessInfo::setProcessName("zelstyle-gallery");
    // The library on the GLib main context, and what the desktop looks like, before GTK asks the
    // session bus for anything, and before the first style is asked for.
    const zel::ZelGtkMainQueue queue;
    std::optional<zel::ZelGtkPortalAppearance> desktop;
    if (options.source == gallery::Source::Portal) {
        desktop.emplace().start();
    } else {
        zel::NSApplication::sharedApplication()->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed(options.source == gallery::Source::Dark
                                                   ? zel::NSAppearanceNameDarkAqua
                                                   : zel::NSAppearanceNameAqua));
    }
    if (!gtk_init_check()) {
        std::fputs("GTK finds no display\n", stderr);
        return 1;
    }
    if (!options.screenshot.empty()) { // nothing half on its way from one colour to another
        g_object_set(gtk_settings_get_default(), "gtk-enable-animations", FALSE, nullptr);
    }

    zel::ZelStyleManager::setup();
    gallery::addTintedStyles();

    // The styles' colours as named colours, and a style sheet that uses them.
    const zel::ZelGtkStyleProvider colors;
    gallery::useStyleSheet();

    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    bool failed = false;
    {
        gallery::GalleryWindow window;
        const auto closed = +[](GMainLoop* running) noexcept -> gboolean {
            g_main_loop_quit(running);
            return TRUE;
        };
        g_signal_connect_swapped(window.widget(), "close-request", G_CALLBACK(closed), loop);
        gallery::FirstFrame frame(window, options, loop, started);
        gtk_window_present(GTK_WINDOW(window.widget()));
        frame.await();
        g_main_loop_run(loop);
        failed = frame.failed();
    }
    g_main_loop_unref(loop);
    return failed ? 1 : 0;
}
