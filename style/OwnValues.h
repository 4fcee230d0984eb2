// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelAttributeValue.h>
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <optional>
#include <string_view>
#include <vector>

namespace zel::inline v1 {

/// A style's own values, null markers included: as many as were written. Guarded by `stylesLock`.
class OwnValues {
public:
    struct Predefined {
        ZelStyleAttribute attribute;
        ZelAttributeValue value;
    };

    [[nodiscard]] const ZelAttributeValue* find(std::string_view key) const;
    /// Stores a value and hands out the one that it replaces, to be destroyed outside the lock.
    std::optional<ZelAttributeValue> set(std::string_view key, const ZelAttributeValue& value);
    std::optional<ZelAttributeValue> set(ZelStyleAttribute attribute,
                                         const ZelAttributeValue& value);

    /// The values of predefined attributes, in the order of their list.
    [[nodiscard]] const std::vector<Predefined>& predefined() const noexcept { return predefined_; }
    /// All others, by key.
    [[nodiscard]] const ZelAttributeDictionary& custom() const noexcept { return custom_; }

private:
    std::vector<Predefined> predefined_;
    ZelAttributeDictionary custom_;
};

} // namespace zel::inline v1
