// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleSystemAppearance.h>

#include "style/StylingLock.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/NSProcessInfo.h>

#include <atomic>
#include <utility>

namespace zel::inline v1 {

std::string_view ZelStyleSystemAppearanceChangedNotification = "ZelStyleSystemAppearanceChanged";

namespace {

constexpr std::string_view effectiveAppearanceKey = "effectiveAppearance";

/// Whether the system knows a dark appearance at all.
bool systemHasDarkAppearance() {
    return NSProcessInfo::isOperatingSystemAtLeastVersion({10, 14, 0});
}

} // namespace

ZelStyleSystemAppearance::ZelStyleSystemAppearance() = default;

ZelStyleSystemAppearance::~ZelStyleSystemAppearance() {
    const auto application = NSApp();
    if (application && systemHasDarkAppearance()) {
        application->removeObserver(*this, effectiveAppearanceKey, this);
    }
}

// Initialising the tracker notifies its observers, who may want the styling lock: it is acquired
// first, so that no thread holds it while it waits for another one to make the tracker. An observer
// that asks meanwhile gets the one that is being made.
const std::shared_ptr<ZelStyleSystemAppearance>& ZelStyleSystemAppearance::shared(Make make) {
    using Shared = const std::shared_ptr<ZelStyleSystemAppearance>;
    static std::atomic<Shared*> made{nullptr}; // never destroyed: domains may end at exit
    if (Shared* present = made.load(std::memory_order_acquire)) {
        return *present;
    }
    const StylingLock lock;
    static Shared* making = nullptr; // by the lock
    if (making == nullptr) {
        making = new Shared(make());
        try {
            (*making)->init();
        } catch (...) { // no memory, or an observer's: the next request makes it afresh
            delete std::exchange(making, nullptr);
            throw;
        }
        made.store(making, std::memory_order_release);
    }
    return *making;
}

// An application object made later is not observed; the host then determines by hand.
std::shared_ptr<NSObject> ZelStyleSystemAppearance::init() {
    if (!NSObject::init()) {
        return nullptr;
    }
    const auto application = NSApp();
    if (application && systemHasDarkAppearance()) {
        application->addObserver(shared_from_this(), effectiveAppearanceKey,
                                 NSKeyValueObservingOptions::Default, this);
    }
    determineFromSystemAppearance();
    return shared_from_this();
}

void ZelStyleSystemAppearance::determineFromSystemAppearance() {
    ZelStyleSystemAppearanceType type = ZelStyleSystemAppearanceTypeLight;
    const auto application = NSApp();
    if (application && systemHasDarkAppearance()) {
        const auto match = application->effectiveAppearance().bestMatchFromAppearancesWithNames(
            {NSAppearanceNameDarkAqua, NSAppearanceNameAqua});
        if (match == NSAppearanceNameDarkAqua) {
            type = ZelStyleSystemAppearanceTypeDark;
        }
    }
    setCurrentAppearanceType(type);
}

void ZelStyleSystemAppearance::observeValueForKeyPath(std::string_view /*keyPath*/,
                                                      NSObject& /*ofObject*/,
                                                      const NSKeyValueChange& /*change*/,
                                                      const void* context) {
    if (context == this && systemHasDarkAppearance()) {
        determineFromSystemAppearance();
    }
}

void ZelStyleSystemAppearance::setCurrentAppearanceType(std::uint64_t type) {
    if (type == currentAppearanceType()) {
        return;
    }
    willChangeValueForKey("currentAppearanceType");
    type_.store(type, std::memory_order_release);
    didChangeValueForKey("currentAppearanceType");
    NSMainQueue::mainQueue().async([tracker = shared_from_this()] {
        NSNotificationCenter::defaultCenter().postNotificationName(
            ZelStyleSystemAppearanceChangedNotification, tracker);
    });
}

} // namespace zel::inline v1
