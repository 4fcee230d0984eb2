// SPDX-License-Identifier: Apache-2.0
#include "platform/WeakTable.h"

namespace zel {
inline namespace v1 {
namespace {

/// The place that holds the link to an entry; its object's link lock is held.
WeakTableEntry** linkTo(ObjectState& state, const WeakTableEntry& entry) noexcept {
    WeakTableEntry** link = &state.entries;
    while (*link != &entry) {
        link = &(*link)->nextOfOwner;
    }
    return link;
}

} // namespace

WeakTableEntry* WeakTableBase::entryOf(const ObjectState& state) const noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    WeakTableEntry* entry = state.entries;
    while (entry && entry->table != this) {
        entry = entry->nextOfOwner;
    }
    return entry;
}

void WeakTableBase::link(WeakTableEntry& entry, ObjectState& state) noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    entry.state = &state;
    entry.nextOfOwner = std::exchange(state.entries, &entry);
}

void WeakTableBase::unlink(WeakTableEntry& entry) noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    *linkTo(*entry.state, entry) = entry.nextOfOwner;
    entry.state = nullptr;
}

void WeakTableBase::relink(WeakTableEntry& from, WeakTableEntry& to) noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    *linkTo(*from.state, from) = &to;
    to.state = std::exchange(from.state, nullptr);
    to.nextOfOwner = from.nextOfOwner;
    to.table = from.table;
}

} // namespace v1
} // namespace zel
