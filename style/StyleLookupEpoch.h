// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

namespace zel {
inline namespace v1 {

/// Moves whenever a style may be found where another one, or none, was found before, or may have
/// other ancestors: a scheme's table changed, another scheme became current, a style got another
/// parent or ended.
class StyleLookupEpoch {
public:
    [[nodiscard]] static std::uint64_t now() noexcept {
        return epoch_.load(std::memory_order_acquire);
    }
    static void advance() noexcept { epoch_.fetch_add(1, std::memory_order_acq_rel); }

private:
    static constinit std::atomic<std::uint64_t> epoch_;
};

} // namespace v1
} // namespace zel
