// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/ObjectState.h"

#include "platform/objects/WeakTable.h"

#include <ZelStyleKit/NSObject.h>

namespace zel {
inline namespace v1 {

std::mutex& ObjectState::linkLock() noexcept {
    static auto* const lock = new std::mutex; // never destroyed: objects may end at exit
    return *lock;
}

ObjectState& ObjectState::of(const NSObject& object) {
    ObjectState* present = find(object);
    if (present == nullptr) {
        auto made = std::make_unique<ObjectState>();
        if (object.state_.compare_exchange_strong(present, made.get(), std::memory_order_acq_rel)) {
            present = made.release();
        }
    }
    return *present;
}

// A table is held while its entry is dropped, since it may be ending on another thread; a table
// that has ended has taken its entries out of the links.
void ObjectState::end(NSObject& object) noexcept {
    ObjectState* const state = find(object);
    if (state == nullptr) {
        return;
    }
    for (;;) {
        std::shared_ptr<WeakTableBase> table;
        {
            const std::scoped_lock guard(linkLock());
            if (state->entries.isEmpty()) {
                break;
            }
            (void)state->entries.find([&](const WeakTableEntry& entry) {
                return (table = WeakTableBase::withNumber(entry.table)) != nullptr;
            });
        }
        if (table) {
            table->ownerEnded(*state);
        }
    }
    delete state;
}

} // namespace v1
} // namespace zel
