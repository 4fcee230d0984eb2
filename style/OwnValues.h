// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/AttributeKeys.h"

#include <ZelStyleKit/ZelAttributeValue.h>

#include <optional>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

/// A style's own values: as many as were written, in the order of their keys' places. Guarded by
/// the style's values lock.
class OwnValues {
public:
    struct Entry {
        AttributeIndex key;
        ZelAttributeValue value;
    };

    [[nodiscard]] const ZelAttributeValue* find(AttributeIndex key) const noexcept;
    /// Stores a value and hands out the one that it replaces, to end outside the lock.
    std::optional<ZelAttributeValue> set(AttributeIndex key, ZelAttributeValue value);

    [[nodiscard]] const std::vector<Entry>& entries() const noexcept { return entries_; }

private:
    std::vector<Entry> entries_; // sorted by key
};

} // namespace v1
} // namespace zel
