// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>

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

} // namespace

std::string_view ZelStyleAttributeKeyOf(ZelStyleAttribute attribute) noexcept {
    return predefinedKeys[static_cast<std::size_t>(attribute)];
}

} // namespace zel::inline v1
