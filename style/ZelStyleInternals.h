// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/AttributeKeys.h"
#include "style/AttributeSlot.h"
#include "style/MergedValues.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {

/// The way from the library's other sources, and from tests, to what a style keeps to itself.
struct ZelStyleInternals {
    /// Copies the merged slot of a predefined attribute, without a lock; false where the merged
    /// values aren't there.
    [[nodiscard, gnu::always_inline]] static bool
    readPredefined(const ZelStyle& style, ZelStyleAttribute attribute, AttributeSlot& slot) {
        const MergedValues* merged = style.merged_.load(std::memory_order_acquire);
        return merged && merged->readPredefined(static_cast<AttributeIndex>(attribute), slot);
    }

    /// The merged slot of a predefined attribute, in any case; an absent slot where there is none.
    static AttributeSlot predefinedSlot(const ZelStyle& style, ZelStyleAttribute attribute) {
        AttributeSlot slot;
        if (!readPredefined(style, attribute, slot)) [[unlikely]] {
            slot = computedSlot(style, static_cast<AttributeIndex>(attribute));
        }
        return slot;
    }

    /// Brings the merged values up to date under the locks of the style and its ancestors, then
    /// answers the slot.
    static AttributeSlot computedSlot(const ZelStyle& style, AttributeIndex key);
    /// The same of the effective value, which is nothing for the null marker.
    static std::optional<ZelAttributeValue> computedValue(const ZelStyle& style,
                                                          AttributeIndex key);

    /// Stores an own value under a key's place; what `setValue` does for a key that isn't nil.
    static void setValueAt(ZelStyle& style, AttributeIndex key,
                           const std::optional<ZelAttributeValue>& value);

    static const ZelStyle::Providers& defaultValueProviders() {
        return ZelStyle::_defaultValueProviders();
    }
    static StyleState& state(const ZelStyle& style) { return *style.state_; }
    static void incrementSeed(ZelStyle& style) { style._incrementSeed(); }
    static bool hasComputedValues(const ZelStyle& style) {
        const MergedValues* merged = style.merged_.load(std::memory_order_acquire);
        return merged && merged->isComputed();
    }
    /// Both under the style's values lock.
    static OwnValues& ownValues(const ZelStyle& style);
    static MergedValues& mergedValues(const ZelStyle& style);
    static std::shared_ptr<ZelStyle> self(const ZelStyle& style) { return style.self(); }
};

} // namespace v1
} // namespace zel
