// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSApplication.h>

#include "platform/locks/PrivateLock.h"

namespace zel::inline v1 {
namespace {

struct Holder {
    PrivateLock lock;
    std::shared_ptr<NSApplication> application; // guarded by the lock until it is set, then fixed
};

Holder& holder() {
    static auto* const held = new Holder; // never destroyed: used at exit
    return *held;
}

} // namespace

NSApplication::NSApplication() : appearance_(NSAppearance::appearanceNamed(NSAppearanceNameAqua)) {}

const std::shared_ptr<NSApplication>& NSApplication::sharedApplication() {
    Holder& held = holder();
    if (!NSApp()) {
        auto made = alloc<NSApplication>(); // goes where another thread has made one meanwhile
        const PrivateGuard guard(held.lock);
        if (!held.application) {
            held.application.swap(made);
        }
    }
    return held.application;
}

void NSApplication::setEffectiveAppearance(const NSAppearance& appearance) {
    if (appearance == appearance_) {
        return;
    }
    willChangeValueForKey("effectiveAppearance");
    appearance_ = appearance;
    didChangeValueForKey("effectiveAppearance");
}

std::shared_ptr<NSApplication> NSApp() {
    Holder& held = holder();
    const PrivateGuard guard(held.lock);
    return held.application;
}

} // namespace zel::inline v1
