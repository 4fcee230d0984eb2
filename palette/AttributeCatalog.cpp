// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>
#include <memory>
#include <unordered_map>

namespace zel::inline v1 {

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

using AttributesByKey = std::unordered_map<std::string_view, ZelStyleAttribute>;

AttributesByKey* makeAttributesByKey() {
    auto made = std::make_unique<AttributesByKey>();
    for (std::size_t i = 0; i < predefinedKeys.size(); ++i) {
        made->emplace(predefinedKeys[i], static_cast<ZelStyleAttribute>(i));
    }
    return made.release();
}

} // namespace

std::string_view ZelStyleAttributeKeyOf(ZelStyleAttribute attribute) noexcept {
    return predefinedKeys[static_cast<std::size_t>(attribute)];
}

std::optional<ZelStyleAttribute> ZelStyleAttributeForKey(std::string_view key) {
    static const auto& byKey = *makeAttributesByKey(); // never destroyed: styles may end at exit
    const auto found = byKey.find(key);
    return found == byKey.end() ? std::nullopt : std::optional(found->second);
}

} // namespace zel::inline v1
