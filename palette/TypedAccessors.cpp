// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {
namespace {

/// Where the merged values have to be computed first, or are being written.
[[gnu::noinline]] std::optional<NSColor> readColorByLocking(const ZelStyle& style,
                                                            ZelStyleAttribute attribute) {
    return ZelStyleInternals::predefinedSlot(style, attribute).asColor();
}

// Inlined into each accessor: the call would cost as much as the read.
[[gnu::always_inline]] inline std::optional<NSColor> readColor(const ZelStyle& style,
                                                               ZelStyleAttribute attribute) {
    AttributeSlot slot;
    if (ZelStyleInternals::readPredefined(style, attribute, slot)) [[likely]] {
        return slot.asColor();
    }
    return readColorByLocking(style, attribute);
}

std::optional<NSNumber> readNumber(const ZelStyle& style, ZelStyleAttribute attribute) {
    return ZelStyleInternals::predefinedSlot(style, attribute).asNumber();
}

template <class Value>
void write(ZelStyle& style, ZelStyleAttribute attribute, const std::optional<Value>& value) {
    ZelStyleInternals::setValueAt(style, static_cast<AttributeIndex>(attribute),
                                  value ? std::optional<ZelAttributeValue>(*value) : std::nullopt);
}

} // namespace

#define ZEL_DEFINE_ACCESSORS(key, Key, Kind, group)                                                \
    std::optional<NS##Kind> ZelStyle::key() const {                                                \
        return read##Kind(*this, ZelStyleAttribute::Key);                                          \
    }                                                                                              \
    void ZelStyle::set##Key(const std::optional<NS##Kind>& value) {                                \
        write(*this, ZelStyleAttribute::Key, value);                                               \
    }
ZEL_STYLE_ATTRIBUTES(ZEL_DEFINE_ACCESSORS)
#undef ZEL_DEFINE_ACCESSORS

namespace {

std::uint64_t typeOf(const ZelStyle& style) {
    const auto type = style.styleType();
    return type ? type->unsignedLongValue() : ZelStyleTypeCustom;
}

} // namespace

bool ZelStyle::isDarkStyle() const {
    return typeOf(*this) == ZelStyleTypeDark;
}

bool ZelStyle::isLightStyle() const {
    return typeOf(*this) == ZelStyleTypeLight;
}

bool ZelStyle::isCustomStyle() const {
    return typeOf(*this) == ZelStyleTypeCustom;
}

} // namespace v1
} // namespace zel
