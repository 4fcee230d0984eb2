// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/PrivateLock.h"
#include "platform/objects/WeaklyKeyed.h"

#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <vector>

namespace zel::inline v1 {
namespace {

/// Whether the weak reference is to that object, which lives. Without taking hold of it: that might
/// end it, with the table locked.
bool isTo(const std::weak_ptr<NSObject>& reference, const std::shared_ptr<NSObject>& object) {
    return !reference.owner_before(object) && !object.owner_before(reference);
}

struct Registration {
    std::weak_ptr<NSObject> observer;
    const NSObject* identity = nullptr; ///< the observer, for its own destructor; never followed
    std::shared_ptr<const NSNotificationCenter::Callback> callback;
    std::string name;
    std::weak_ptr<NSObject> object;
    bool anyObject = true;

    /// Of one sender only, not even a notification without one is wanted once that sender has
    /// ended.
    [[nodiscard]] bool wants(const NSNotification& notification) const {
        return name == notification.name &&
               (anyObject || (notification.object && isTo(object, notification.object)));
    }
};

} // namespace

struct NSNotificationCenter::Registrations final : WeaklyKeyed {
    PrivateLock lock;
    /// An observer's together, in the order in which they were added.
    std::list<Registration> all ZEL_GUARDED_BY(lock);

    void add(const std::shared_ptr<NSObject>& observer, Registration registration) {
        watch(*observer);
        const PrivateGuard guard(lock);
        const auto last = std::find_if(all.rbegin(), all.rend(), [&](const Registration& each) {
            return each.identity == observer.get();
        });
        all.insert(last == all.rend() ? all.end() : last.base(), std::move(registration));
    }

    /// Moves out what has to be destroyed, which may hold anything, outside the lock.
    template <class Goes>
    std::list<Registration> extract(Goes goes) {
        std::list<Registration> extracted;
        const PrivateGuard guard(lock);
        for (auto each = all.begin(); each != all.end();) {
            const auto next = std::next(each);
            if (goes(*each)) {
                extracted.splice(extracted.end(), all, each);
            }
            each = next;
        }
        return extracted;
    }

    void keyEnded(const NSObject& key) noexcept override {
        (void)extract([&](const Registration& each) { return each.identity == &key; });
    }

    std::vector<Registration> wanting(const NSNotification& notification) {
        std::vector<Registration> found;
        const PrivateGuard guard(lock);
        std::ranges::copy_if(all, std::back_inserter(found),
                             [&](const Registration& each) { return each.wants(notification); });
        return found;
    }
    [[nodiscard]] bool holds(const Registration& registration) {
        const PrivateGuard guard(lock);
        return std::ranges::find(all, registration.callback, &Registration::callback) != all.end();
    }
};

NSNotificationCenter::NSNotificationCenter() : registrations_(std::make_shared<Registrations>()) {}

NSNotificationCenter::~NSNotificationCenter() = default;

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
    static auto* const center = new NSNotificationCenter; // never destroyed: used at exit
    return *center;
}

void NSNotificationCenter::addObserver(const std::shared_ptr<NSObject>& observer, Callback callback,
                                       std::string_view name,
                                       const std::shared_ptr<NSObject>& object) {
    if (!observer || !callback) {
        return;
    }
    registrations_->add(observer, {observer, observer.get(),
                                   std::make_shared<const Callback>(std::move(callback)),
                                   std::string(name), object, object == nullptr});
}

void NSNotificationCenter::removeObserver(const NSObject& observer, std::string_view name,
                                          const std::shared_ptr<NSObject>& object) {
    (void)registrations_->extract([&](const Registration& each) {
        return each.identity == &observer && each.name == name &&
               (!object || isTo(each.object, object));
    });
}

void NSNotificationCenter::postNotificationName(std::string_view name,
                                                const std::shared_ptr<NSObject>& object) {
    const NSNotification notification{std::string(name), object};
    for (const Registration& each : registrations_->wanting(notification)) {
        const auto observer = each.observer.lock();
        if (observer && registrations_->holds(each)) {
            requireNoPrivateLock();
            (*each.callback)(notification);
        }
    }
}

} // namespace zel::inline v1
