// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/palette/Palette.h"

#include "tools/zelstyle/terminal/ColorText.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <algorithm>

namespace zel::tool {
namespace {

PaletteEntry entryOf(const ZelStyle& style, std::string_view key, PaletteGroup group) {
    PaletteEntry entry{key, group, {}};
    const auto value = style.effectiveValueForAttribute(key);
    if (!value) {
        return entry;
    }
    if (const NSNumber* number = value->number()) {
        entry.value = number->unsignedLongValue();
    } else if (const NSColor* color = value->color()) {
        if (const auto components = color->sRGBComponents()) {
            entry.value = *components;
        }
    }
    return entry;
}

} // namespace

std::string PaletteEntry::text() const {
    if (const ZelRGBA* held = color()) {
        return shortHexOf(*held);
    }
    const std::uint64_t* held = number();
    return held ? std::to_string(*held) : "-";
}

ZelRGBA Palette::colorFor(std::string_view key) const {
    const auto found = std::ranges::find(entries, key, &PaletteEntry::key);
    const ZelRGBA* color = found == entries.end() ? nullptr : found->color();
    return color ? *color : ZelRGBA{};
}

Palette paletteOf(std::string_view scheme) {
    const auto owner = alloc<ZelStyleScheme>()->initWithIdentifier(scheme, nullptr);
    const auto style = alloc<ZelStyle>()->initWithIdentifier(ZelStyleIdentifierMain, owner);
    Palette palette{std::string(scheme), {}};
    palette.entries.reserve(ZelStyleAttributeCount);
#define ZELSTYLE_READ(key, Key, Kind, group)                                                       \
    palette.entries.push_back(                                                                     \
        entryOf(*style, ZelStyleAttributeKeyOf(ZelStyleAttribute::Key), PaletteGroup::group));
    ZEL_STYLE_ATTRIBUTES(ZELSTYLE_READ)
#undef ZELSTYLE_READ
    return palette;
}

} // namespace zel::tool
