// SPDX-License-Identifier: Apache-2.0
// A style made before main runs, when nobody knows which other initialisers have run: both built-in
// providers have to be there, and so have the key constants.
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>

namespace {

struct Early {
    std::shared_ptr<zel::ZelStyle> style =
        zel::alloc<zel::ZelStyle>()->initWithIdentifier("early", nullptr);
    std::optional<zel::NSColor> indigo = style->indigoColor();
    std::optional<zel::NSColor> label = style->labelColor();
    std::optional<zel::ZelAttributeValue> type =
        style->effectiveValueForAttribute(zel::ZelStyleAttributeKeyStyleType);
    std::optional<zel::ZelAttributeValue> tableBackground =
        style->effectiveValueForAttribute(zel::ZelStyleAttributeKeyTableBackgroundColor);
};

const Early early;

} // namespace

int main() {
    using zel::NSColor;
    const bool base =
        early.indigo == NSColor::colorWithSRGBRed(88.0 / 255, 86.0 / 255, 214.0 / 255, 1) &&
        early.type && early.type->number() &&
        *early.type->number() == zel::NSNumber::numberWithUnsignedLong(0);
    const bool main = early.label == NSColor::colorWithSRGBRed(0, 0, 0, 1) &&
                      early.tableBackground && early.tableBackground->color() &&
                      *early.tableBackground->color() == NSColor::colorWithSRGBRed(1, 1, 1, 1);
    if (!base || !main) {
        std::fprintf(stderr, "before main: base palette %s, semantic colours %s\n",
                     base ? "there" : "missing", main ? "there" : "missing");
    }
    return base && main ? 0 : 1;
}
