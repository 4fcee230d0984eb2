// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {

// The slot of a read that succeeds stays in registers: nothing else may write to it, and what takes
// locks stands elsewhere.
std::optional<ZelAttributeValue>
ZelStyle::effectiveValueForAttribute(const std::optional<std::string_view>& key) const {
    const PooledString* known = key ? attributeKeys().find(*key) : nullptr;
    if (known == nullptr) {
        // Nil, or a key that no style has yet: reading it merges the values all the same.
        (void)ZelStyleInternals::predefinedSlot(*this, ZelStyleAttribute{});
        return std::nullopt;
    }
    AttributeSlot slot;
    const MergedValues* merged = merged_.load(std::memory_order_acquire);
    if (merged && merged->read(known->index, slot)) [[likely]] {
        if (slot.tag >= AttributeSlot::number) [[likely]] {
            return slot.asValue();
        }
        if (slot.tag != AttributeSlot::other) {
            return std::nullopt;
        }
    }
    return ZelStyleInternals::computedValue(*this, known->index);
}

} // namespace v1
} // namespace zel
