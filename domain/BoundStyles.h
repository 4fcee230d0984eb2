// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/StyleForest.h"
#include "platform/objects/ObjectState.h"
#include "platform/objects/StyleBinding.h"
#include "style/StyleLookupEpoch.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <array>
#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

class ZelStyleDomain;

/// The binding of any object: by its memo or its node where it has one, else by asking it, and each
/// object above it, for its parent. An object that is not styleable has the main style's.
StyleBinding styleBindingOf(const NSObject& object);

/// The same of an object whose state is at hand, which alone is looked at where it knows.
inline StyleBinding styleBindingOf(const NSObject& object, const ObjectState& state) {
    const auto bound = state.binding.load(BindingEpoch::now());
    return bound ? *bound : styleBindingOf(object);
}

/// What is remembered of a style that was delivered: its token's serial, 0 for nil.
[[nodiscard]] inline std::uint64_t serialOf(const std::shared_ptr<ZelStyle>& style) noexcept {
    return style ? style->token().serial() : ZelStyleToken().serial();
}

/// Whether a delivery forces a style: all of them, or its filter's and those that descend from it.
[[nodiscard]] inline bool isForced(const std::shared_ptr<ZelStyle>& style,
                                   const ZelStyleDelivery& delivery) {
    const auto& only = delivery.forStyleOnly;
    return delivery.force && (!only || (style && (style == only || style->isChildOf(only))));
}

/// The styles that one walk over listeners has found so far, by binding, so that listeners that are
/// bound alike share one look-up. Each is held until another takes its place, which may end it.
class BoundStyles {
public:
    BoundStyles(ZelStyleDomain& domain, const ZelStyleDelivery& delivery) noexcept
        : domain_(domain), delivery_(delivery) {}

    struct Found {
        std::uint64_t epoch = 0; ///< of StyleLookupEpoch, which begins at 1
        StyleBinding binding = 0;
        bool isForced = false; ///< whether the delivery forces the style
        std::uint64_t serial = 0;
        std::shared_ptr<ZelStyle> style;

        /// The epoch in which the delivery is known to force the style; 0 where it doesn't.
        [[nodiscard]] std::uint64_t forcedEpoch() const noexcept { return isForced ? epoch : 0; }
    };

    /// The style of a binding, now, and what is known of it; stays in place until the next call.
    const Found& find(StyleBinding binding) {
        Found& found = found_[binding % found_.size()];
        if (found.epoch != StyleLookupEpoch::now() || found.binding != binding) [[unlikely]] {
            lookUp(binding, found);
        }
        return found;
    }

    /// Lets the forest, which must last, tell which styles descend from the delivery's own, as long
    /// as nothing moves the epoch: however many ancestors they have.
    void useForest(const StyleForest& forest) noexcept {
        forest_ = &forest;
        forestEpoch_ = StyleLookupEpoch::now();
    }

    /// False where a listener is known not to be due, by what its state and this remember. Changes
    /// nothing and calls nothing.
    [[nodiscard]] bool mayBeDue(const ObjectState& listener) const noexcept {
        const auto bound = listener.binding.load(BindingEpoch::now());
        if (!bound) {
            return true;
        }
        const Found& found = found_[*bound % found_.size()];
        return found.epoch != StyleLookupEpoch::now() || found.binding != *bound ||
               found.isForced ||
               listener.lastZelStyle.load(std::memory_order_relaxed) != found.serial;
    }

private:
    void lookUp(StyleBinding binding, Found& found);
    [[nodiscard]] bool isForcedNow(const std::shared_ptr<ZelStyle>& style) const;

    ZelStyleDomain& domain_;
    const ZelStyleDelivery& delivery_;
    const StyleForest* forest_ = nullptr;
    std::uint64_t forestEpoch_ = 0;
    std::array<Found, 8> found_; // by the binding's last bits
};

} // namespace v1
} // namespace zel
