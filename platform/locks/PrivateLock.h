// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/ThreadSafety.h"

#include <cassert>
#include <mutex>

namespace zel::inline v1 {

#ifndef NDEBUG
/// How many private locks the present thread holds; at most one.
inline thread_local unsigned heldPrivateLocks = 0;
#endif

/// A lock for a few words of the library's own memory. It is a leaf: while one is held, no other
/// lock is acquired, nobody else's code is called, and nothing of a host's is destroyed, copied or
/// compared. What has to be destroyed is moved out and destroyed after the lock was released. A
/// build for debugging asserts that, here and in `requireNoPrivateLock`.
/// Threads: any. Failure: none.
class ZEL_CAPABILITY("private lock") PrivateLock {
public:
    constexpr PrivateLock() noexcept = default;
    PrivateLock(const PrivateLock&) = delete;
    PrivateLock& operator=(const PrivateLock&) = delete;

    void lock() ZEL_ACQUIRE() {
#ifndef NDEBUG
        assert(heldPrivateLocks == 0 && "a private lock is acquired while another one is held");
        ++heldPrivateLocks;
#endif
        mutex_.lock();
    }
    void unlock() ZEL_RELEASE() {
        mutex_.unlock();
#ifndef NDEBUG
        --heldPrivateLocks;
#endif
    }

private:
    std::mutex mutex_;
};

/// Holds a private lock for a scope.
class ZEL_SCOPED_CAPABILITY PrivateGuard {
public:
    explicit PrivateGuard(PrivateLock& lock) ZEL_ACQUIRE(lock) : lock_(lock) { lock_.lock(); }
    PrivateGuard(const PrivateGuard&) = delete;
    PrivateGuard& operator=(const PrivateGuard&) = delete;
    ~PrivateGuard() ZEL_RELEASE() { lock_.unlock(); }

private:
    PrivateLock& lock_;
};

/// Stands before every call of a host's code: the thread holds no private lock.
inline void requireNoPrivateLock() noexcept {
#ifndef NDEBUG
    assert(heldPrivateLocks == 0 && "a host is called while a private lock is held");
#endif
}

} // namespace zel::inline v1
