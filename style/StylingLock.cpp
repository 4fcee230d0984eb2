// SPDX-License-Identifier: Apache-2.0
#include "style/StylingLock.h"

#include "platform/Misuse.h"
#include "platform/locks/PrivateLock.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace zel::inline v1 {
namespace {

struct Lock {
    std::timed_mutex mutex;
    std::atomic<std::thread::id> holder{};
    unsigned depth = 0; ///< how often the holder has acquired it; guarded by the mutex
};

Lock& lock() {
    static auto* const made = new Lock; // never destroyed: domains may end at exit
    return *made;
}

// By the system's clock, since the thread sanitizer doesn't know waiting by the steady one. A clock
// that is set meanwhile makes the report come sooner or later, no more.
void wait(std::timed_mutex& mutex) {
    constexpr std::chrono::seconds patience(5);
    if (!mutex.try_lock_until(std::chrono::system_clock::now() + patience)) {
        reportMisuse("A thread has waited five seconds for a handler, an observer or a changes "
                     "callback that runs on another thread. If that callback waits for this "
                     "thread, neither goes on: pass the work on instead of waiting for it.");
        mutex.lock();
    }
}

} // namespace

bool StylingLock::isHeld() noexcept {
    return lock().holder.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void StylingLock::acquire() {
    requireNoPrivateLock();
    Lock& styling = lock();
    if (!isHeld()) {
        if (!styling.mutex.try_lock()) {
            wait(styling.mutex);
        }
        styling.holder.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ++styling.depth;
}

void StylingLock::release() noexcept {
    Lock& styling = lock();
    if (--styling.depth == 0) {
        styling.holder.store(std::thread::id(), std::memory_order_relaxed);
        styling.mutex.unlock();
    }
}

} // namespace zel::inline v1
