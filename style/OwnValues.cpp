// SPDX-License-Identifier: Apache-2.0
#include "style/OwnValues.h"

#include <algorithm>

namespace zel {
inline namespace v1 {

const ZelAttributeValue* OwnValues::find(AttributeIndex key) const noexcept {
    const auto at = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
    return at != entries_.end() && at->key == key ? &at->value : nullptr;
}

std::optional<ZelAttributeValue> OwnValues::set(AttributeIndex key, ZelAttributeValue value) {
    constexpr std::size_t usual = 3; // values of a child style
    if (entries_.capacity() == 0) {
        entries_.reserve(usual);
    }
    const auto at = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
    if (at != entries_.end() && at->key == key) {
        return std::exchange(at->value, std::move(value));
    }
    entries_.insert(at, Entry{key, std::move(value)});
    return std::nullopt;
}

} // namespace v1
} // namespace zel
