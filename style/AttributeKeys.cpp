// SPDX-License-Identifier: Apache-2.0
#include "style/AttributeKeys.h"

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>
#include <unordered_map>

namespace zel {
inline namespace v1 {

#define ZEL_DEFINE_KEY(key, Key, Kind, group) std::string_view ZelStyleAttributeKey##Key = #key;
ZEL_STYLE_ATTRIBUTES(ZEL_DEFINE_KEY)
#undef ZEL_DEFINE_KEY

namespace {

constexpr std::array<std::string_view, ZelStyleAttributeCount> predefinedKeys{
#define ZEL_NAME_KEY(key, Key, Kind, group) #key,
    ZEL_STYLE_ATTRIBUTES(ZEL_NAME_KEY)
#undef ZEL_NAME_KEY
};
static_assert(ZelStyleAttributeCount == 55);

} // namespace

std::optional<AttributeIndex> indexOfAttribute(std::string_view key) noexcept {
    using Indices = std::unordered_map<std::string_view, AttributeIndex>;
    static const Indices& indices =
        []() -> const Indices& { // never destroyed: styles may end at exit
        auto* const made = new Indices;
        for (const std::string_view each : predefinedKeys) {
            made->emplace(each, static_cast<AttributeIndex>(made->size()));
        }
        return *made;
    }();
    const auto found = indices.find(key);
    return found == indices.end() ? std::nullopt : std::optional(found->second);
}

std::string_view ZelStyleAttributeKeyOf(ZelStyleAttribute attribute) noexcept {
    return predefinedKeys[static_cast<std::size_t>(attribute)];
}

} // namespace v1
} // namespace zel
