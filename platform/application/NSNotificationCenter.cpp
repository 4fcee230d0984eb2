// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/WeakTable.h"

#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <vector>

namespace zel {
inline namespace v1 {
namespace {

/// Whether the weak reference is to that object, which lives. Without taking hold of it: that might
/// end it, with the table locked.
bool isTo(const std::weak_ptr<NSObject>& reference, const std::shared_ptr<NSObject>& object) {
    return !reference.owner_before(object) && !object.owner_before(reference);
}

struct Registration {
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

/// Observer to its registrations, in the order in which they were added.
using RegistrationTable = WeakTable<std::vector<Registration>, LockRank::Notifications>;

struct Call {
    std::weak_ptr<NSObject> observer;
    std::shared_ptr<const NSNotificationCenter::Callback> callback;
};

} // namespace

struct NSNotificationCenter::Registrations {
    std::shared_ptr<RegistrationTable> table = std::make_shared<RegistrationTable>();

    [[nodiscard]] bool holds(const NSObject& observer, const Call& call) const {
        const RecursiveGuard guard(table->lock);
        const auto* entry = table->find(observer);
        return entry && std::ranges::any_of(entry->payload, [&](const Registration& each) {
                   return each.callback == call.callback;
               });
    }
};

NSNotificationCenter::NSNotificationCenter() : registrations_(std::make_unique<Registrations>()) {}

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
    auto& table = *registrations_->table;
    Registration registration{std::make_shared<const Callback>(std::move(callback)),
                              std::string(name), object, object == nullptr};
    const RecursiveGuard guard(table.lock);
    auto* entry = table.find(*observer);
    if (entry == nullptr) {
        entry = &table.insert(observer, {});
    }
    entry->payload.push_back(std::move(registration));
}

void NSNotificationCenter::removeObserver(const NSObject& observer, std::string_view name,
                                          const std::shared_ptr<NSObject>& object) {
    auto& table = *registrations_->table;
    std::vector<Registration> ended; // ends after the lock is released
    const RecursiveGuard guard(table.lock);
    auto* entry = table.find(observer);
    if (entry == nullptr) {
        return;
    }
    auto& registrations = entry->payload;
    const auto kept =
        std::stable_partition(registrations.begin(), registrations.end(), [&](const auto& each) {
            return each.name != name || (object && !isTo(each.object, object));
        });
    ended.assign(std::make_move_iterator(kept), std::make_move_iterator(registrations.end()));
    registrations.erase(kept, registrations.end());
    if (registrations.empty()) {
        const auto empty = table.remove(*entry);
    }
}

void NSNotificationCenter::postNotificationName(std::string_view name,
                                                const std::shared_ptr<NSObject>& object) {
    const NSNotification notification{std::string(name), object};
    std::vector<Call> calls;
    std::vector<std::shared_ptr<NSObject>> observers; // held, so that none ends in the walk's lock
    for (RegistrationTable::Walk walk(registrations_->table); auto* entry = walk.next();) {
        observers.push_back(walk.owner());
        for (const Registration& each : entry->payload) {
            if (each.wants(notification)) {
                calls.push_back({walk.owner(), each.callback});
            }
        }
    }
    observers.clear();
    for (const Call& call : calls) {
        const auto observer = call.observer.lock();
        if (observer && registrations_->holds(*observer, call)) {
            (*call.callback)(notification);
        }
    }
}

} // namespace v1
} // namespace zel
