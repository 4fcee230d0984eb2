// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyle.h>

namespace zel::inline v1 {
namespace {

// Inlined into each accessor: the call would cost as much as the read.
[[gnu::always_inline]] inline std::optional<NSColor> readColor(const ZelStyle& style,
                                                               ZelStyleAttribute attribute) {
    AttributeSlot slot;
    if (ZelStyleInternals::readPredefined(style, attribute, slot)) [[likely]] {
        return slot.asColor();
    }
    return ZelStyleInternals::computedSlot(style, attribute).asColor();
}

std::optional<NSNumber> readNumber(const ZelStyle& style, ZelStyleAttribute attribute) {
    AttributeSlot slot;
    if (!ZelStyleInternals::readPredefined(style, attribute, slot)) {
        slot = ZelStyleInternals::computedSlot(style, attribute);
    }
    return slot.asNumber();
}

template <class Value>
void write(ZelStyle& style, ZelStyleAttribute attribute, const std::optional<Value>& value) {
    style.setValue(value ? std::optional<ZelAttributeValue>(*value) : std::nullopt,
                   ZelStyleAttributeKeyOf(attribute));
}

/// The classes that declare the accessors, by the group of the attribute.
using BaseAttributes = ZelStyleBasePalette;
using MainAttributes = ZelStyleSemanticColors;

} // namespace

#define ZEL_DEFINE_ACCESSORS(key, Key, Kind, group)                                                \
    std::optional<NS##Kind> group##Attributes::key() const {                                       \
        return read##Kind(static_cast<const ZelStyle&>(*this), ZelStyleAttribute::Key);            \
    }                                                                                              \
    void group##Attributes::set##Key(const std::optional<NS##Kind>& value) {                       \
        write(static_cast<ZelStyle&>(*this), ZelStyleAttribute::Key, value);                       \
    }
ZEL_STYLE_ATTRIBUTES(ZEL_DEFINE_ACCESSORS)
#undef ZEL_DEFINE_ACCESSORS

namespace {

std::uint64_t typeIn(const std::optional<NSNumber>& number) {
    return number ? number->unsignedLongValue() : ZelStyleTypeCustom;
}

} // namespace

bool ZelStyleBasePalette::isDarkStyle() const {
    return typeIn(styleType()) == ZelStyleTypeDark;
}

bool ZelStyleBasePalette::isLightStyle() const {
    return typeIn(styleType()) == ZelStyleTypeLight;
}

bool ZelStyleBasePalette::isCustomStyle() const {
    return typeIn(styleType()) == ZelStyleTypeCustom;
}

} // namespace zel::inline v1
