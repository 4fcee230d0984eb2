// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::inline v1 {

/// Holds the one recursive lock of the process behind which handlers, observers of updates and
/// changes callbacks run, for a scope. It serialises style updates, deliveries, registrations with
/// their first call, and the walks over listeners and update observers: no two of these run on two
/// threads at once, and no order of locks has to be remembered. Looking up, reading, writing values
/// and ending an object never acquire it; unregistering, and removing an update observer, do so
/// only to wait for another thread's walk over that table.
/// Threads: any; acquired while no private lock is held.
/// Failure: a thread that has waited five seconds reports that as a misuse, once, and goes on
/// waiting: the holder runs a callback that doesn't return, perhaps since it waits for this thread.
class StylingLock {
public:
    StylingLock() { acquire(); }
    StylingLock(const StylingLock&) = delete;
    StylingLock& operator=(const StylingLock&) = delete;
    ~StylingLock() { release(); }

    /// Whether the present thread holds it.
    [[nodiscard]] static bool isHeld() noexcept;

private:
    static void acquire();
    static void release() noexcept;
};

} // namespace zel::inline v1
