// SPDX-License-Identifier: Apache-2.0
#include "style/StylingLock.h"

#include "platform/Misuse.h"
#include "platform/locks/PrivateLock.h"

#include <chrono>
#include <mutex>

namespace zel::inline v1 {
namespace {

/// How often the present thread has acquired the lock.
thread_local unsigned depth = 0;

std::timed_mutex& mutex() {
    static auto* const made = new std::timed_mutex; // never destroyed: domains may end at exit
    return *made;
}

// By the system's clock, since the thread sanitizer doesn't know waiting by the steady one. A clock
// that is set meanwhile makes the report come sooner or later, no more.
void wait() {
    constexpr std::chrono::seconds patience(5);
    if (!mutex().try_lock_until(std::chrono::system_clock::now() + patience)) {
        reportMisuse("A thread has waited five seconds for a handler, an observer or a changes "
                     "callback that runs on another thread. If that callback waits for this "
                     "thread, neither goes on: pass the work on instead of waiting for it.");
        mutex().lock();
    }
}

} // namespace

bool StylingLock::isHeld() noexcept {
    return depth > 0;
}

void StylingLock::acquire() {
    requireNoPrivateLock();
    if (depth == 0 && !mutex().try_lock()) {
        wait();
    }
    ++depth;
}

void StylingLock::release() noexcept {
    if (--depth == 0) {
        mutex().unlock();
    }
}

} // namespace zel::inline v1
