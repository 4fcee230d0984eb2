// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/LockRank.h"

#include <atomic>
#include <cstdint>
#include <mutex>

namespace zel {
inline namespace v1 {

/// The lock of a table or an object: a thread may take it again while it holds it. Taken only by
/// scoped guards, so that an exception that passes releases it. Its rank costs nothing but in a
/// build that checks the order of locks (ZELSTYLEKIT_CHECK_LOCK_ORDER), which ends the process
/// where a thread takes one against `lockRules`, or uses what one guards without it.
#ifndef ZELSTYLEKIT_CHECK_LOCK_ORDER
class RecursiveLock : public std::recursive_mutex {
public:
    explicit RecursiveLock(LockRank /*rank*/) noexcept {}
    void setRank(LockRank /*rank*/) noexcept {}
    /// Forgets the order in which this lock was seen with others of its rank, which changes now.
    void forgetOrder() noexcept {}
    /// For what the lock guards: the present thread holds it.
    void requireHeld() const noexcept {}
};
#else
class RecursiveLock {
public:
    explicit RecursiveLock(LockRank rank) noexcept : rank_(rank) {}
    RecursiveLock(const RecursiveLock&) = delete;
    RecursiveLock& operator=(const RecursiveLock&) = delete;
    ~RecursiveLock() { forgetOrder(); }

    void lock();
    bool try_lock();
    void unlock();

    /// Before the lock is used.
    void setRank(LockRank rank) noexcept { rank_ = rank; }
    void forgetOrder() noexcept;
    void requireHeld() const noexcept;

private:
    friend class HeldLocks;
    static constexpr std::uint32_t neverTaken = UINT32_MAX;

    std::recursive_mutex mutex_;
    /// Where the lock stands, counted from 1, among those that its holder holds; 0: nobody holds
    /// it. Right for its holder; other threads read it to see that it isn't theirs.
    std::atomic<std::uint32_t> place_{neverTaken};
    LockRank rank_;
};
#endif

using RecursiveGuard = std::unique_lock<RecursiveLock>;

} // namespace v1
} // namespace zel
