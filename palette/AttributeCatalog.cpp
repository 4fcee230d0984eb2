// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>
#include <cstddef>

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

/// Where a key is looked for first, by its length and four of its characters; the factors were
/// searched for: all keys but two have a place of their own. (A find in an unordered_map reads the
/// whole key and divides, which takes twice as long as all of this.)
constexpr std::size_t shortestKey = 8;
constexpr std::size_t placeOf(std::string_view key) {
    const auto at = [&](std::size_t i) -> std::size_t {
        return static_cast<unsigned char>(key[i]);
    };
    const std::size_t size = key.size();
    return size * 2 + at(0) * 16 + at(size / 2) * 10 + at(size - 8) * 9 + at(size - 1) * 13;
}

/// The attributes by the places of their keys, each at the first free one; made by the compiler.
constexpr std::size_t placeCount = 128;
constexpr auto attributesByPlace = [] {
    std::array<std::optional<ZelStyleAttribute>, placeCount> places;
    for (std::size_t i = 0; i < predefinedKeys.size(); ++i) {
        std::size_t place = placeOf(predefinedKeys[i]);
        while (places[place % placeCount]) {
            ++place;
        }
        places[place % placeCount] = static_cast<ZelStyleAttribute>(i);
    }
    return places;
}();

} // namespace

std::string_view ZelStyleAttributeKeyOf(ZelStyleAttribute attribute) noexcept {
    return predefinedKeys[static_cast<std::size_t>(attribute)];
}

std::optional<ZelStyleAttribute> ZelStyleAttributeForKey(std::string_view key) {
    if (key.size() < shortestKey) {
        return std::nullopt;
    }
    std::size_t place = placeOf(key);
    while (const auto attribute = attributesByPlace[place % placeCount]) {
        if (key == ZelStyleAttributeKeyOf(*attribute)) {
            return attribute;
        }
        ++place;
    }
    return std::nullopt;
}

} // namespace zel::inline v1
