// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/WeakTable.h"

#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zel {
inline namespace v1 {
namespace {

struct Observation {
    std::weak_ptr<NSObject> observer;
    const NSObject* identity = nullptr; ///< the observer, for its own destructor; never followed
    std::string keyPath;
    NSKeyValueObservingOptions options = NSKeyValueObservingOptions::None;
    const void* context = nullptr;
};

/// Observed object to its observations, in the order in which they were added.
using ObservationTable = WeakTable<std::vector<Observation>, LockRank::Observations>;

const std::shared_ptr<ObservationTable>& observations() {
    static auto* const table =
        new std::shared_ptr<ObservationTable>(std::make_shared<ObservationTable>());
    return *table;
}

/// The observations of a key as they are now, so that observers are called without the lock.
std::vector<Observation> observationsOf(const NSObject& object, std::string_view key) {
    std::vector<Observation> found;
    const auto& table = observations();
    const RecursiveGuard guard(table->lock);
    if (const auto* entry = table->find(object)) {
        std::ranges::copy_if(entry->payload, std::back_inserter(found),
                             [&](const Observation& each) { return each.keyPath == key; });
    }
    return found;
}

/// Whether an observation still stands, which an observer called before it may have ended.
bool stands(const NSObject& object, const Observation& observation) {
    const auto& table = observations();
    const RecursiveGuard guard(table->lock);
    const auto* entry = table->find(object);
    return entry && std::ranges::any_of(entry->payload, [&](const Observation& each) {
               return each.identity == observation.identity &&
                      each.keyPath == observation.keyPath && each.context == observation.context;
           });
}

void tell(NSObject& object, std::string_view key, bool isPrior) {
    for (const Observation& observation : observationsOf(object, key)) {
        if (isPrior && observation.options != NSKeyValueObservingOptions::Prior) {
            continue;
        }
        const auto observer = observation.observer.lock();
        if (observer && stands(object, observation)) {
            observer->observeValueForKeyPath(key, object, {.isPrior = isPrior},
                                             observation.context);
        }
    }
}

} // namespace

void NSObject::addObserver(const std::shared_ptr<NSObject>& observer, std::string_view forKeyPath,
                           NSKeyValueObservingOptions options, const void* context) {
    if (!observer) {
        return;
    }
    const auto& table = observations();
    const RecursiveGuard guard(table->lock);
    auto* entry = table->find(*this);
    if (entry == nullptr) {
        entry = &table->insert(shared_from_this(), {});
    }
    std::erase_if(entry->payload, [](const Observation& each) { return each.observer.expired(); });
    entry->payload.push_back({observer, observer.get(), std::string(forKeyPath), options, context});
}

void NSObject::removeObserver(const NSObject& observer, std::string_view forKeyPath,
                              const void* context) {
    const auto& table = observations();
    const RecursiveGuard guard(table->lock);
    if (auto* entry = table->find(*this)) {
        std::erase_if(entry->payload, [&](const Observation& each) {
            return each.identity == &observer && each.keyPath == forKeyPath &&
                   each.context == context;
        });
    }
}

void NSObject::willChangeValueForKey(std::string_view key) {
    tell(*this, key, true);
}

void NSObject::didChangeValueForKey(std::string_view key) {
    tell(*this, key, false);
}

} // namespace v1
} // namespace zel
