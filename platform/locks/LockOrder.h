// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/CallStack.h"
#include "platform/locks/RecursiveLock.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace zel {
inline namespace v1 {

/// A lock that a thread holds, and where it took it.
struct HeldLock {
    RecursiveLock* lock = nullptr; ///< none: released before one that was taken later
    std::uint32_t count = 0;       ///< how many times it is taken
    CallStack taken;
};

/// The locks that the present thread holds, in the order in which it took them, for builds that
/// check that order. Allocates nothing for as many as anybody holds but a chain of styles, of which
/// each holds a lock.
/// Threads: each thread has its own.
/// Failure: a lock that is taken against the order, or not held where it has to be, ends the
/// process, after the stacks were printed.
class HeldLocks {
public:
    static HeldLocks& ofThisThread() noexcept;

    /// Before the thread takes a lock, and may have to wait for it.
    void check(RecursiveLock& lock) noexcept;
    void noteTaken(RecursiveLock& lock) noexcept;
    void noteReleased(RecursiveLock& lock) noexcept;
    void requireHeld(const RecursiveLock& lock) noexcept;

private:
    static constexpr std::uint32_t usual = 32;

    [[nodiscard]] HeldLock& at(std::uint32_t index) noexcept {
        return index < usual ? first_[index] : more_[index - usual];
    }
    [[nodiscard]] HeldLock* find(const RecursiveLock& lock) noexcept;
    [[nodiscard]] bool holds(LockRank rank) const noexcept {
        return byRank_[static_cast<std::size_t>(rank)] > 0;
    }
    [[nodiscard]] bool isInOrder(const RecursiveLock& lock, LockRank held) const noexcept;
    [[nodiscard]] HeldLock& lastOf(LockRank rank) noexcept;
    void growTo(std::uint32_t count) noexcept;

    // No destructor: other objects of the thread may use locks while they end. What grew is given
    // back when it is empty.
    std::array<HeldLock, usual> first_{};
    HeldLock* more_ = nullptr;
    std::uint32_t moreCapacity_ = 0;
    std::uint32_t size_ = 0;
    std::array<std::uint32_t, lockRules.size()> byRank_{};
};

} // namespace v1
} // namespace zel
