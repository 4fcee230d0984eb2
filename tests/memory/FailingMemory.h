// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Watchdog.h"

#include <cstddef>
#include <new>

namespace zeltest {

/// While it stands, operator new works so many times more on this thread, and then fails. One at a
/// time. (This program replaces operator new.)
class MemoryRunsOut {
public:
    explicit MemoryRunsOut(std::size_t afterAllocations) noexcept;
    MemoryRunsOut(const MemoryRunsOut&) = delete;
    MemoryRunsOut& operator=(const MemoryRunsOut&) = delete;
    ~MemoryRunsOut();

    /// Whether an allocation has failed.
    [[nodiscard]] bool hasFailed() const noexcept;
};

/// Runs an action without memory for its first allocation, then without memory for its second, and
/// so on, until it finds all it wants; `check` runs after each that found none, on another thread,
/// which stays stuck where the action has left a lock. Answers how many didn't. An exception of the
/// action's for want of memory is caught.
template <class Action, class Check>
std::size_t runShortOfMemory(Action action, Check check) {
    for (std::size_t count = 0;; ++count) {
        bool hasFailed = false;
        {
            const MemoryRunsOut shortage(count);
            try {
                action();
            } catch (const std::bad_alloc&) {
            }
            hasFailed = shortage.hasFailed();
        }
        if (!hasFailed) {
            return count;
        }
        runElsewhere(check);
    }
}

} // namespace zeltest
