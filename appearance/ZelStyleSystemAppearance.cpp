// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleSystemAppearance.h>

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/NSProcessInfo.h>

namespace zel {
inline namespace v1 {

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

const std::shared_ptr<ZelStyleSystemAppearance>&
ZelStyleSystemAppearance::sharedSystemAppearance() {
    static const auto* const shared = [] { // never destroyed: domains may end at exit
        auto tracker = alloc<ZelStyleSystemAppearance>();
        tracker->init();
        return new std::shared_ptr<ZelStyleSystemAppearance>(std::move(tracker));
    }();
    return *shared;
}

// An application object made later is not observed; the host then determines by hand.
std::shared_ptr<NSObject> ZelStyleSystemAppearance::init() {
    if (!NSObject::init()) {
        return nullptr;
    }
    const auto application = NSApp();
    if (application && systemHasDarkAppearance()) {
        application->addObserver(shared_from_this(), effectiveAppearanceKey,
                                 NSKeyValueObservingOptions::None, this);
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

} // namespace v1
} // namespace zel
