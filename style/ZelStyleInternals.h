// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/StyleState.h"

#include <ZelStyleKit/ZelStyle.h>

#include <optional>
#include <span>
#include <vector>

namespace zel::inline v1 {

/// What a style keeps to itself, for the library's other sources: reads without a lock, writes by
/// the place of an attribute, and the internal operations.
struct ZelStyleInternals {
    using State = ZelStyle::State;
    static State& state(const ZelStyle& style) noexcept { return *style.state_; }

    /// Copies the merged slot of a predefined attribute, without a lock; false where the merged
    /// values aren't there.
    [[nodiscard, gnu::always_inline]] static bool
    readPredefined(const ZelStyle& style, ZelStyleAttribute attribute, AttributeSlot& slot) {
        const MergedValues* merged = state(style).merged.load(std::memory_order_acquire);
        return merged && merged->readPredefined(attribute, slot);
    }
    /// The same in any case: computes the merged values where they aren't there.
    static AttributeSlot predefinedSlot(const ZelStyle& style, ZelStyleAttribute attribute);

    /// The effective value of a predefined attribute, nothing for the null marker.
    static std::optional<ZelAttributeValue> effectiveValue(const ZelStyle& style,
                                                           ZelStyleAttribute attribute);

    /// Stores an own value, nil as the null marker, and invalidates the merged ones.
    static void setValueAt(ZelStyle& style, ZelStyleAttribute attribute,
                           const std::optional<ZelAttributeValue>& value);
    /// Stores all given own values in one step: the index is the attribute, empty ones are skipped.
    static void
    setValuesAt(ZelStyle& style,
                std::span<const std::optional<ZelAttributeValue>, ZelStyleAttributeCount> values);

    /// The providers of the process, in their order.
    static const std::vector<std::shared_ptr<ZelStyleDefaultValueProvider>>&
    _defaultValueProviders();
    /// `_setupWithDefaultValuesUsingScheme:`
    static void _setupWithDefaultValuesUsingScheme(const std::shared_ptr<ZelStyle>& style,
                                                   const std::shared_ptr<ZelStyleScheme>& scheme);
    /// `_incrementSeed`: one more accepted update, and the merged values are invalid.
    static void _incrementSeed(ZelStyle& style);
};

} // namespace zel::inline v1
