// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/RecursiveLock.h"
#include "tests/support/Watchdog.h"

namespace zeltest {

/// Whether no thread holds the lock, this one included.
inline bool isFree(zel::RecursiveLock& lock) {
    bool taken = false;
    runElsewhere([&] {
        taken = lock.try_lock();
        if (taken) {
            lock.unlock();
        }
    });
    return taken;
}

} // namespace zeltest
