// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ObjectState.h"
#include "platform/StyleBinding.h"

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

/// Whether a listener is called with a style: where the delivery forces it, or where the style is
/// not the one delivered to it last.
[[nodiscard]] inline bool isDeliveryDue(const std::shared_ptr<ZelStyle>& style,
                                        const ObjectState& listener,
                                        const ZelStyleDelivery& delivery) {
    if (delivery.force) {
        const auto& only = delivery.forStyleOnly;
        if (!only || (style && (style == only || style->isChildOf(only)))) {
            return true;
        }
    }
    const std::uint64_t serial = style ? style->token().serial() : 0;
    return listener.lastZelStyle.load(std::memory_order_relaxed) != serial;
}

/// The styles that one walk over listeners has found so far, by binding, so that listeners that are
/// bound alike share one look-up. Each is held until another takes its place, between two calls.
class BoundStyles {
public:
    explicit BoundStyles(ZelStyleDomain& domain) noexcept : domain_(domain) {}

    /// The style of a binding, now; stays in place until the next call.
    const std::shared_ptr<ZelStyle>& styleFor(StyleBinding binding);

    /// False where a listener is known not to be due, by what its state remembers.
    [[nodiscard]] bool mayBeDue(const ObjectState& listener, const ZelStyleDelivery& delivery) {
        const auto bound = listener.binding.load(BindingEpoch::now());
        return !bound || isDeliveryDue(styleFor(*bound), listener, delivery);
    }

private:
    struct Found {
        std::uint64_t epoch = 0; ///< of StyleLookupEpoch, which begins at 1
        StyleBinding binding = 0;
        std::shared_ptr<ZelStyle> style;
    };

    ZelStyleDomain& domain_;
    std::array<Found, 8> found_; // by the binding's last bits
};

} // namespace v1
} // namespace zel
