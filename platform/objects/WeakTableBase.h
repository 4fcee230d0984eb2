// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/RecursiveLock.h"
#include "platform/objects/ObjectState.h"

#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

class WeakTableBase;

/// One key of a weak-keyed table. Its address is stable while the table is walked or called from.
struct WeakTableEntry {
    std::weak_ptr<NSObject> owner;
    ObjectState* state = nullptr; ///< the owner's; nothing once the entry was removed
    std::uint32_t table = 0;      ///< which table, by WeakTableBase::number()
    std::uint32_t order = 0;      ///< among the table's entries; moves together when they do

    [[nodiscard]] bool isLive() const noexcept { return state != nullptr; }
};

/// What a weak-keyed table is to the objects that are its keys.
class WeakTableBase : public std::enable_shared_from_this<WeakTableBase> {
public:
    WeakTableBase();
    virtual ~WeakTableBase();
    WeakTableBase(const WeakTableBase&) = delete;
    WeakTableBase& operator=(const WeakTableBase&) = delete;

    /// Called by an ending owner: drops its entry with what it holds.
    virtual void ownerEnded(ObjectState& state) noexcept = 0;

    /// The table of that number, or nothing where it is ending; linkLock() is held.
    static std::shared_ptr<WeakTableBase> withNumber(std::uint32_t number) noexcept;
    /// Tells the living tables of a process apart.
    [[nodiscard]] std::uint32_t number() const noexcept { return number_; }

    /// The table's lock. Recursive, and held for a whole walk, callbacks included.
    RecursiveLock lock{LockRank::HandlerTable};

protected:
    /// This table's entry of an owner's, or nothing.
    [[nodiscard]] WeakTableEntry* entryOf(const ObjectState& state) const noexcept;
    /// The same while linkLock() is held.
    [[nodiscard, gnu::always_inline]] WeakTableEntry*
    entryIn(const ObjectState& state) const noexcept {
        return state.entries.find(
            [own = number_](const WeakTableEntry& each) { return each.table == own; });
    }
    static void link(WeakTableEntry& entry, ObjectState& state);
    static void unlink(WeakTableEntry& entry) noexcept;
    /// Takes this table's entry out of an owner's links, if there is one, and answers it.
    WeakTableEntry* unlinkFrom(ObjectState& state) noexcept;
    /// Puts an entry in another's place; linkLock() is held.
    static void relink(WeakTableEntry& from, WeakTableEntry& to) noexcept;

private:
    const std::uint32_t number_;
};

} // namespace v1
} // namespace zel
