// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/PrivateLock.h"
#include "platform/objects/Attachment.h"

#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <string>
#include <vector>

namespace zel::inline v1 {
namespace {

struct Observation {
    std::weak_ptr<NSObject> observer;
    const NSObject* identity = nullptr; ///< the observer, for its own destructor; never followed
    std::string keyPath;
    NSKeyValueObservingOptions options = NSKeyValueObservingOptions::Default;
    const void* context = nullptr;

    [[nodiscard]] bool isOf(const NSObject& object, std::string_view path,
                            const void* given) const noexcept {
        return identity == &object && keyPath == path && context == given;
    }
};

constinit PrivateLock observationLock; // guards the observations of every object

/// The observations of an object, in the order in which they were added.
struct Observations final : Attachment {
    explicit Observations(const NSObject& /*observed*/) noexcept {}
    std::list<Observation> all ZEL_GUARDED_BY(observationLock);
};

/// The observations of a key as they are now, so that observers are called without the lock.
std::vector<Observation> observationsOf(const NSObject& object, std::string_view key) {
    std::vector<Observation> found;
    if (const auto* attached = Attachment::find<Observations>(object)) {
        const PrivateGuard guard(observationLock);
        std::ranges::copy_if(attached->all, std::back_inserter(found),
                             [&](const Observation& each) { return each.keyPath == key; });
    }
    return found;
}

/// Whether an observer that was called before this one has not removed it.
bool isStillThere(const NSObject& object, const Observation& observation) {
    const auto* attached = Attachment::find<Observations>(object);
    const PrivateGuard guard(observationLock);
    return std::ranges::any_of(attached->all, [&](const Observation& each) {
        return each.isOf(*observation.identity, observation.keyPath, observation.context);
    });
}

void notifyObservers(NSObject& object, std::string_view key, bool isPrior) {
    for (const Observation& observation : observationsOf(object, key)) {
        if (isPrior && observation.options != NSKeyValueObservingOptions::Prior) {
            continue;
        }
        const auto observer = observation.observer.lock();
        if (observer && isStillThere(object, observation)) {
            requireNoPrivateLock();
            observer->observeValueForKeyPath(key, object, {.isPrior = isPrior},
                                             observation.context);
        }
    }
}

/// Moves the observations that `goes` accepts out of the list, to be destroyed outside the lock.
template <class Goes>
std::list<Observation> extract(std::list<Observation>& from, Goes goes) {
    std::list<Observation> extracted;
    for (auto each = from.begin(); each != from.end();) {
        const auto next = std::next(each);
        if (goes(*each)) {
            extracted.splice(extracted.end(), from, each);
        }
        each = next;
    }
    return extracted;
}

} // namespace

void NSObject::addObserver(const std::shared_ptr<NSObject>& observer, std::string_view forKeyPath,
                           NSKeyValueObservingOptions options, const void* context) {
    if (!observer) {
        return;
    }
    auto& attached = Attachment::of<Observations>(*this);
    Observation added{observer, observer.get(), std::string(forKeyPath), options, context};
    std::list<Observation> ended;
    const PrivateGuard guard(observationLock);
    ended = extract(attached.all, [](const Observation& each) { return each.observer.expired(); });
    attached.all.push_back(std::move(added));
}

void NSObject::removeObserver(const NSObject& observer, std::string_view forKeyPath,
                              const void* context) {
    auto* attached = Attachment::find<Observations>(*this);
    if (attached == nullptr) {
        return;
    }
    std::list<Observation> removed;
    const PrivateGuard guard(observationLock);
    removed = extract(attached->all, [&](const Observation& each) {
        return each.isOf(observer, forKeyPath, context);
    });
}

void NSObject::willChangeValueForKey(std::string_view key) {
    notifyObservers(*this, key, true);
}

void NSObject::didChangeValueForKey(std::string_view key) {
    notifyObservers(*this, key, false);
}

} // namespace zel::inline v1
