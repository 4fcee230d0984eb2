// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace zel {
inline namespace v1 {

/// Where a thread was: the return addresses of the innermost calls, nearest first. A value.
/// Threads: any. Failure: fewer calls, or none, where frames can't be followed.
class CallStack {
public:
    /// The caller's. By frame pointers, which costs a few loads: code that is compiled without them
    /// is left out, or ends the walk.
    [[gnu::noinline]] static CallStack here() noexcept;

    /// Writes one line for each call to standard error, with no allocation.
    void print() const noexcept;
    /// The same of the calls that are running, by unwinding, which leaves nothing out.
    static void printPresent() noexcept;

private:
    std::array<void*, 16> calls_{}; ///< up to the first null
};

} // namespace v1
} // namespace zel
