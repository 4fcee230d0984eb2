// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace zel::tool {

/// A pipe to the process itself, by which another thread or a signal handler ends a wait of its
/// event loop.
/// Owns: both descriptors. Threads: `signal` on any thread and in signal handlers; the rest on the
/// loop's. Failure: construction raises `std::system_error`.
class SelfPipe {
public:
    SelfPipe();
    ~SelfPipe();
    SelfPipe(const SelfPipe&) = delete;
    SelfPipe& operator=(const SelfPipe&) = delete;

    /// Makes the read end readable; never blocks. Keeps errno as it was.
    void signal() const noexcept;
    /// Makes it wait again.
    void clear() const noexcept;

    [[nodiscard]] int readEnd() const noexcept { return ends_[0]; }

private:
    std::array<int, 2> ends_{-1, -1};
};

} // namespace zel::tool
