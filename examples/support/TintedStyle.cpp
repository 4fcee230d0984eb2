// SPDX-License-Identifier: Apache-2.0
#include "TintedStyle.h"

#include <ZelStyleKit/ZelStyleKit.h>

namespace gallery {
namespace {

/// The second colour laid over the first.
std::optional<zel::NSColor> mixed(const std::optional<zel::NSColor>& below,
                                  const std::optional<zel::NSColor>& above, double amount) {
    const auto from = below ? below->sRGBComponents() : std::nullopt;
    const auto to = above ? above->sRGBComponents() : std::nullopt;
    if (!from || !to) {
        return below;
    }
    return zel::NSColor::colorWithSRGBRed(from->red + amount * (to->red - from->red),
                                          from->green + amount * (to->green - from->green),
                                          from->blue + amount * (to->blue - from->blue), 1);
}

void tint(const std::shared_ptr<zel::ZelStyle>& parent,
          const std::shared_ptr<zel::ZelStyle>& child) {
    if (!parent) {
        return;
    }
    const auto accent = parent->accentColor();
    child->setBackgroundColor(mixed(parent->backgroundColor(), accent, 0.10));
    child->setBackgroundColorSecondary(mixed(parent->backgroundColorSecondary(), accent, 0.14));
    child->setBackgroundColorTertiary(mixed(parent->backgroundColorTertiary(), accent, 0.16));
    child->setSeparatorColorContent(accent->colorWithAlphaComponent(0.35));
}

std::vector<std::shared_ptr<zel::ZelStyleScheme>> schemes() {
    const auto domain = zel::ZelStyleDomain::defaultDomain();
    return {domain->lightScheme(), domain->darkScheme()};
}

} // namespace

void addTintedStyles() {
    for (const auto& scheme : schemes()) {
        const auto main = scheme->styleForIdentifier(zel::ZelStyleIdentifierMain);
        scheme->addStyle(main->inheritedStyleWithChanges(tint, tintedStyle, scheme));
    }
}

void setAccent(const zel::NSColor& accent) {
    for (const auto& scheme : schemes()) {
        scheme->styleForIdentifier(zel::ZelStyleIdentifierMain)
            ->updateStyleWithChanges([&](const auto& style) {
                style->setAccentColor(accent);
                style->setControlColor(accent);
                return true;
            });
    }
}

} // namespace gallery
