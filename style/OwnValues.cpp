// SPDX-License-Identifier: Apache-2.0
#include "style/OwnValues.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zel::inline v1 {

const ZelAttributeValue* OwnValues::find(std::string_view key) const {
    if (const auto attribute = ZelStyleAttributeForKey(key)) {
        const auto at =
            std::ranges::lower_bound(predefined_, *attribute, {}, &Predefined::attribute);
        return at != predefined_.end() && at->attribute == *attribute ? &at->value : nullptr;
    }
    const auto found = custom_.find(key);
    return found == custom_.end() ? nullptr : &found->second;
}

std::optional<ZelAttributeValue> OwnValues::set(std::string_view key,
                                                const ZelAttributeValue& value) {
    if (const auto attribute = ZelStyleAttributeForKey(key)) {
        return set(*attribute, value);
    }
    const auto [found, isNew] = custom_.try_emplace(std::string(key), value);
    return isNew ? std::nullopt : std::optional(std::exchange(found->second, value));
}

std::optional<ZelAttributeValue> OwnValues::set(ZelStyleAttribute attribute,
                                                const ZelAttributeValue& value) {
    const auto at = std::ranges::lower_bound(predefined_, attribute, {}, &Predefined::attribute);
    if (at != predefined_.end() && at->attribute == attribute) {
        return std::exchange(at->value, value);
    }
    predefined_.insert(at, Predefined{attribute, value});
    return std::nullopt;
}

} // namespace zel::inline v1
