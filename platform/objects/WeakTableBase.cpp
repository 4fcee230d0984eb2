// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/WeakTableBase.h"

#include <mutex>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

namespace {

/// The living tables by number; guarded by ObjectState::linkLock().
struct TableNumbers {
    std::vector<WeakTableBase*> tables;
    std::vector<std::uint32_t> free;
};

TableNumbers& tableNumbers() {
    static auto* const numbers = new TableNumbers; // never destroyed: tables may end at exit
    return *numbers;
}

std::uint32_t takeNumber(WeakTableBase& table) {
    const std::scoped_lock guard(ObjectState::linkLock());
    auto& [tables, free] = tableNumbers();
    if (free.empty()) {
        free.reserve(tables.size() + 1); // so that giving the number back can't fail
        tables.push_back(&table);
        return static_cast<std::uint32_t>(tables.size() - 1);
    }
    const std::uint32_t number = free.back();
    free.pop_back();
    tables[number] = &table;
    return number;
}

} // namespace

WeakTableBase::WeakTableBase() : number_(takeNumber(*this)) {}

WeakTableBase::~WeakTableBase() {
    const std::scoped_lock guard(ObjectState::linkLock());
    tableNumbers().tables[number_] = nullptr;
    tableNumbers().free.push_back(number_);
}

std::shared_ptr<WeakTableBase> WeakTableBase::withNumber(std::uint32_t number) noexcept {
    WeakTableBase* const table = tableNumbers().tables[number];
    return table ? table->weak_from_this().lock() : nullptr;
}

WeakTableEntry* WeakTableBase::entryOf(const ObjectState& state) const noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    return entryIn(state);
}

void WeakTableBase::link(WeakTableEntry& entry, ObjectState& state) {
    entry.state = &state; // before the links lead here
    if (!state.entries.addFirst(entry)) {
        const std::scoped_lock guard(ObjectState::linkLock());
        state.entries.add(entry);
    }
}

void WeakTableBase::unlink(WeakTableEntry& entry) noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    std::exchange(entry.state, nullptr)->entries.remove(entry);
}

WeakTableEntry* WeakTableBase::unlinkFrom(ObjectState& state) noexcept {
    const std::scoped_lock guard(ObjectState::linkLock());
    WeakTableEntry* const entry = entryIn(state);
    if (entry) {
        state.entries.remove(*entry);
        entry->state = nullptr;
    }
    return entry;
}

void WeakTableBase::relink(WeakTableEntry& from, WeakTableEntry& to) noexcept {
    from.state->entries.replace(from, to);
    to.state = std::exchange(from.state, nullptr);
}

} // namespace v1
} // namespace zel
