// SPDX-License-Identifier: Apache-2.0
// An application whose window is told that the system has turned dark. Ends with 77 where there is
// no display, after what GTK can do without one.
#include <ZelStyleKit/ZelGtkColor.h>
#include <ZelStyleKit/ZelGtkMainQueue.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>
#include <ZelStyleKit/ZelGtkStyleProvider.h>
#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>

namespace {

// Nobody is on the bus, and so the desktop is light.
bool startsAlone() {
    zel::ZelGtkPortalAppearance desktop;
    zel::ZelPortalOptions options;
    options.busAddress = "unix:path=/nonexistent/bus";
    return desktop.start(options) == zel::ZelPortalStatus::NoBus;
}

bool turnsDark(GtkWidget* window) {
    bool dark = false;
    zel::ZelGtkStyleable::of(window)->registerStyleableChangeHandler(
        [&dark](const auto&, const auto& style, auto) { dark = style->isDarkStyle(); });
    if (dark) {
        return false;
    }
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    return dark;
}

} // namespace

int main() {
    const zel::ZelGtkMainQueue queue;
    if (!startsAlone()) {
        return 1;
    }
    const auto red = zel::ZelGdkRGBAWithColor(zel::NSColor::colorWithSRGBRed(1, 0, 0, 1));
    if (!red || red->red != 1.0F || red->green != 0.0F) {
        return 1;
    }
    if (!gtk_init_check()) {
        std::puts("SKIPPED: no display for a window");
        return 77;
    }
    zel::ZelStyleManager::setup();
    const zel::ZelGtkStyleProvider colors;
    GtkWidget* const window = gtk_window_new();
    const bool dark = turnsDark(window);
    std::printf("%s, colours loaded %d times\n", dark ? "dark" : "light",
                static_cast<int>(colors.loadCount()));
    gtk_window_destroy(GTK_WINDOW(window));
    return dark && colors.loadCount() == 2 ? 0 : 1;
}
