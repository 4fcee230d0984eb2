// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/RecursiveLock.h"

namespace zel {
inline namespace v1 {

/// A field that a lock guards: whoever uses it names the lock and holds it. In a build that checks
/// locks, one who doesn't ends the process.
template <class T>
class Guarded {
public:
    [[nodiscard]] T& with(const RecursiveLock& lock) noexcept {
        lock.requireHeld();
        return value_;
    }
    [[nodiscard]] const T& with(const RecursiveLock& lock) const noexcept {
        lock.requireHeld();
        return value_;
    }
    /// For a thread that alone writes the field, and so may read it without the lock.
    [[nodiscard]] const T& withoutLock() const noexcept { return value_; }

private:
    T value_{};
};

} // namespace v1
} // namespace zel
