// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtPalette.h>

#include "PaletteRoles.h"
#include "QtWidgetLink.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelStyle.h>

#include <algorithm>
#include <vector>

namespace zel::inline v1 {
namespace {

using Values = std::shared_ptr<const ZelAttributeDictionary>;

QColor colorUnder(const ZelAttributeDictionary& values, ZelStyleAttribute attribute) {
    const auto found = values.find(ZelStyleAttributeKeyOf(attribute));
    const NSColor* const color = found == values.end() ? nullptr : found->second.color();
    return color ? ZelQColorWithColor(*color) : QColor();
}

QPalette paletteWithValues(const ZelAttributeDictionary& values) {
    QPalette palette;
    for (const PaletteRole& each : paletteRoles) {
        const QColor color = colorUnder(values, each.attribute);
        const QColor disabled = colorUnder(values, each.disabled);
        if (color.isValid()) {
            palette.setColor(QPalette::Active, each.role, color);
            palette.setColor(QPalette::Inactive, each.role, color);
        }
        if (disabled.isValid()) {
            palette.setColor(QPalette::Disabled, each.role, disabled);
        }
    }
    return palette;
}

/// The palettes made last, by the snapshot of values that they were made from: a style answers
/// another one as soon as its values may have changed, and a snapshot that is held keeps its
/// address to itself.
class PaletteCache {
public:
    const QPalette& paletteFor(const Values& values) {
        const auto found = std::ranges::find(entries_, values, &Entry::values);
        if (found != entries_.end()) {
            std::rotate(entries_.begin(), found, found + 1);
        } else {
            if (entries_.size() == capacity) {
                entries_.pop_back();
            }
            entries_.insert(entries_.begin(), {values, paletteWithValues(*values)});
        }
        return entries_.front().palette;
    }

private:
    struct Entry {
        Values values;
        QPalette palette;
    };
    static constexpr std::size_t capacity = 16; // more styles than an application shows at a time

    std::vector<Entry> entries_; // used last, first
};

} // namespace

QPalette ZelQtPalette::paletteWithStyle(const std::shared_ptr<ZelStyle>& style) {
    static PaletteCache& cache = *std::make_unique<PaletteCache>().release(); // never destroyed
    return style ? cache.paletteFor(style->effectiveValues()) : QPalette();
}

void ZelQtPalette::follow(QWidget& widget) {
    QtWidgetLink::of(widget).setPaletteHandler(
        [&widget](const auto& style) { widget.setPalette(paletteWithStyle(style)); });
}

void ZelQtPalette::unfollow(QWidget& widget) {
    QtWidgetLink* const link = QtWidgetLink::find(widget);
    if (link && link->hasPaletteHandler()) {
        link->setPaletteHandler(nullptr);
        widget.setPalette(QPalette());
    }
}

} // namespace zel::inline v1
