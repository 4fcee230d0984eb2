// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSUserDefaults.h>

#include "platform/defaults/DefaultsFile.h"
#include "platform/locks/PrivateLock.h"

#include <functional>
#include <map>
#include <utility>

namespace zel::inline v1 {

NSUserDefaultsStore::~NSUserDefaultsStore() = default;

struct NSUserDefaults::State {
    const std::shared_ptr<NSUserDefaultsStore> file = std::make_shared<DefaultsFile>();

    PrivateLock lock;
    std::shared_ptr<NSUserDefaultsStore> store ZEL_GUARDED_BY(lock) = file; ///< never null
    /// What the store could not write; none under a key means that it could not remove it.
    std::map<std::string, std::optional<NSUserDefaultsValue>, std::less<>>
        unwritten ZEL_GUARDED_BY(lock);
};

NSUserDefaults::NSUserDefaults() : state_(std::make_unique<State>()) {}

NSUserDefaults::~NSUserDefaults() = default;

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
    // Never destroyed: objects that live as long as the process use it while they end.
    static NSUserDefaults& defaults = *std::make_unique<NSUserDefaults>().release();
    return defaults;
}

std::optional<NSUserDefaultsValue> NSUserDefaults::objectForKey(std::string_view key) const {
    try {
        std::shared_ptr<NSUserDefaultsStore> store;
        {
            const PrivateGuard guard(state_->lock);
            const auto found = state_->unwritten.find(key);
            if (found != state_->unwritten.end()) {
                return found->second;
            }
            store = state_->store;
        }
        requireNoPrivateLock();
        return store->objectForKey(key);
    } catch (...) { // out of memory, or a host's store that breaks its word
        return std::nullopt;
    }
}

bool NSUserDefaults::setObject(const std::optional<NSUserDefaultsValue>& value,
                               std::string_view forKey) {
    std::shared_ptr<NSUserDefaultsStore> store;
    {
        const PrivateGuard guard(state_->lock);
        store = state_->store;
    }
    bool written = false;
    requireNoPrivateLock();
    try {
        written = store->setObject(value, forKey);
    } catch (...) { // out of memory, or a host's store that breaks its word
        written = false;
    }
    try {
        const PrivateGuard guard(state_->lock);
        if (state_->store != store) {
            return written; // replaced meanwhile, and with it what this process alone holds
        }
        if (!written) {
            state_->unwritten.insert_or_assign(std::string(forKey), value);
        } else if (const auto held = state_->unwritten.find(forKey);
                   held != state_->unwritten.end()) {
            state_->unwritten.erase(held);
        }
    } catch (...) { // out of memory: the value can't even be held here
        return written;
    }
    return written;
}

void NSUserDefaults::setStore(std::shared_ptr<NSUserDefaultsStore> store) {
    std::map<std::string, std::optional<NSUserDefaultsValue>, std::less<>> unwritten;
    {
        const PrivateGuard guard(state_->lock);
        if (!store) {
            store = state_->file;
        }
        state_->store.swap(store);
        state_->unwritten.swap(unwritten);
    }
    // The former store ends here, outside the lock: it may use the defaults itself.
}

} // namespace zel::inline v1
