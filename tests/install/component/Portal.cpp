// SPDX-License-Identifier: Apache-2.0
// Follows a bus that isn't there, so that the outcome is the same on every machine.
#include <ZelStyleKit/ZelPortalAppearance.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>
#include <string>

int main() {
    std::string told;
    zel::ZelPortalAppearance portal;
    zel::ZelPortalOptions options;
    options.busAddress = "unix:path=/nonexistent/bus";
    options.statusChanged = [&told](zel::ZelPortalStatus, const std::string& reason) {
        told = reason;
    };
    portal.start(options);
    const zel::ZelPortalStatus status = portal.waitForFirstAnswer();
    const bool light = zel::NSApplication::sharedApplication()->effectiveAppearance().name() ==
                       zel::NSAppearanceNameAqua;
    std::printf("status %d, %s: %s\n", static_cast<int>(status), light ? "light" : "not light",
                told.c_str());
    return status == zel::ZelPortalStatus::NoBus && light && !told.empty() ? 0 : 1;
}
