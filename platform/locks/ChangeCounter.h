// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

namespace zel::inline v1 {

/// Counts changes, so that what was remembered before one is recognised as outdated: whoever
/// remembers something reads the counter first, and compares it before using what it remembers.
/// Whoever makes a change increments it afterwards. Begins at 1: 0 stands for "never".
/// Threads: any.
class ChangeCounter {
public:
    [[nodiscard]] std::uint64_t now() const noexcept {
        return value_.load(std::memory_order_acquire);
    }
    void increment() noexcept { value_.fetch_add(1, std::memory_order_acq_rel); }

private:
    std::atomic<std::uint64_t> value_{1};
};

} // namespace zel::inline v1
