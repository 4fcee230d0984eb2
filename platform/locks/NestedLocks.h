// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/CallStack.h"
#include "platform/locks/RecursiveLock.h"

#include <optional>

namespace zel {
inline namespace v1 {

/// In which order locks of one rank were seen to be taken inside each other, on any thread. Ranks
/// can't say that a child's values come before its parent's; what was seen can: two locks that are
/// taken one way round now and the other way round later may each be waited for by the holder of
/// the other. A lock has one other that is taken inside it, as a style has one parent, so that the
/// graph is a forest, and a circle is found by following it.
/// Owns: a table of fixed size, of what was seen last; what it has forgotten goes unnoticed.
/// Threads: any, under a mutex of its own, the innermost one.
struct NestedLocks {
    /// Notes that `inner` is taken inside `outer`; where that closes a circle, answers where the
    /// other way round was seen.
    static std::optional<CallStack> noteInside(const RecursiveLock& outer,
                                               const RecursiveLock& inner) noexcept;
    /// Forgets a lock that ends or whose order changes.
    static void forget(const RecursiveLock& lock) noexcept;
};

} // namespace v1
} // namespace zel
