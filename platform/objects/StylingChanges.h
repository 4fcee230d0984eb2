// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zel {
inline namespace v1 {

/// Counts what may make a listener's style another one than the one delivered to it last: a custom
/// identifier that is set, and a style that is remembered as delivered. (Links of known trees and
/// what a style's identifier leads to have counters of their own.)
struct StylingChanges {
    [[nodiscard]] static std::uint64_t now() noexcept {
        return changes_.load(std::memory_order_acquire);
    }
    static void note() noexcept { changes_.fetch_add(1, std::memory_order_acq_rel); }

    /// The same by notifications, which hold the DeliveryGate, so that they need no atomic
    /// increment.
    [[nodiscard]] static std::uint64_t deliveries() noexcept {
        return deliveries_.load(std::memory_order_acquire);
    }
    static void noteDelivery() noexcept {
        deliveries_.store(deliveries_.load(std::memory_order_relaxed) + 1,
                          std::memory_order_release);
    }

    /// A notification's walk over one table; the DeliveryGate is held. Counts once at its end that
    /// styles may have been remembered, unless `countsEach`.
    class Delivering {
    public:
        explicit Delivering(bool countsEach) noexcept : countsEach_(countsEach) { ++open_; }
        Delivering(const Delivering&) = delete;
        Delivering& operator=(const Delivering&) = delete;
        ~Delivering() {
            --open_;
            if (!countsEach_) {
                noteDelivery();
            }
        }
        /// Whether a handler that another one called brought it about.
        [[nodiscard]] static bool isNested() noexcept { return open_ > 1; }

    private:
        bool countsEach_;
    };

private:
    inline static constinit std::atomic<std::uint64_t> changes_{0};
    inline static constinit std::atomic<std::uint64_t> deliveries_{0};
    inline static constinit std::size_t open_ = 0; // guarded by the DeliveryGate
};

} // namespace v1
} // namespace zel
