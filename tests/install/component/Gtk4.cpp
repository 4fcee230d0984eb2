// SPDX-License-Identifier: Apache-2.0
// What GTK can do without a display: the main queue on the GLib main context, and colours.
#include <ZelStyleKit/ZelGtkColor.h>
#include <ZelStyleKit/ZelGtkMainQueue.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>
#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>

int main() {
    const zel::ZelGtkMainQueue queue;
    bool dark = false;
    zel::NSMainQueue::mainQueue().async([&dark] { dark = true; });
    g_main_context_iteration(nullptr, FALSE);

    zel::ZelGtkPortalAppearance desktop;
    zel::ZelPortalOptions options;
    options.busAddress = "unix:path=/nonexistent/bus";
    const bool alone = desktop.start(options) == zel::ZelPortalStatus::NoBus;

    const auto red = zel::ZelGdkRGBAWithColor(zel::NSColor::colorWithSRGBRed(1, 0, 0, 1));
    const bool none = zel::ZelGtkStyleable::of(nullptr) == nullptr;
    std::printf("queue %d, bus %d, red %d, no widget %d\n", dark, alone, red && red->red == 1.0F,
                none);
    return dark && alone && red && red->red == 1.0F && red->green == 0.0F && none ? 0 : 1;
}
