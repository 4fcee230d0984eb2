// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSApplication.h>

#include <mutex>

namespace zel::inline v1 {
namespace {

struct Holder {
    std::mutex mutex;
    std::shared_ptr<NSApplication> application; // guarded by mutex until it is set, then fixed
};

Holder& holder() {
    static auto* const held = new Holder; // never destroyed: used at exit
    return *held;
}

} // namespace

NSApplication::NSApplication() : appearance_(NSAppearance::appearanceNamed(NSAppearanceNameAqua)) {}

const std::shared_ptr<NSApplication>& NSApplication::sharedApplication() {
    Holder& held = holder();
    const std::scoped_lock guard(held.mutex);
    if (!held.application) {
        held.application = alloc<NSApplication>();
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
    const std::scoped_lock guard(held.mutex);
    return held.application;
}

} // namespace zel::inline v1
