// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/Identifier.h"

#include <atomic>
#include <cstdint>
#include <optional>

namespace zel {
inline namespace v1 {

/// The custom identifiers that apply to an object, its own or the nearest above it, the scheme's
/// and the style's found independently. Neither: the main style.
struct AppliedIdentifiers {
    IdentifierReference scheme;
    IdentifierReference style;
};

/// A pair of applied identifiers as a number, small since programs use few; 0 is neither of them.
using StyleBinding = std::uint32_t;

/// The number of a pair, and the pair of a number. Any thread.
StyleBinding styleBindingOf(AppliedIdentifiers applied);
AppliedIdentifiers appliedIdentifiersOf(StyleBinding binding);

/// Moves whenever an object that others stand below gets another parent or identifier; what was
/// bound before is then bound anew.
class BindingEpoch {
public:
    [[nodiscard]] static std::uint64_t now() noexcept {
        return epoch_.load(std::memory_order_acquire);
    }
    static void advance() noexcept { epoch_.fetch_add(1, std::memory_order_acq_rel); }

private:
    static constinit std::atomic<std::uint64_t> epoch_;
};

/// An object's binding with the epoch it was found in, in one word. Any thread.
class BindingMemo {
public:
    /// The binding, where it was found in this epoch.
    [[nodiscard]] std::optional<StyleBinding> load(std::uint64_t epoch) const noexcept {
        const std::uint64_t word = word_.load(std::memory_order_relaxed);
        return (word >> bindingBits) == epoch ? std::optional(word & bindingMask) : std::nullopt;
    }
    // What doesn't fit isn't kept, and so found anew each time.
    void store(StyleBinding binding, std::uint64_t epoch) noexcept {
        const bool fits = binding <= bindingMask && epoch < (std::uint64_t{1} << epochBits);
        word_.store(fits ? epoch << bindingBits | binding : 0, std::memory_order_relaxed);
    }
    void clear() noexcept { word_.store(0, std::memory_order_relaxed); }

private:
    static constexpr unsigned bindingBits = 24;
    static constexpr unsigned epochBits = 64 - bindingBits;
    static constexpr std::uint64_t bindingMask = (std::uint64_t{1} << bindingBits) - 1;

    std::atomic<std::uint64_t> word_{0}; ///< epochs begin at 1, so 0 is none
};

} // namespace v1
} // namespace zel
