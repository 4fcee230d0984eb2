// SPDX-License-Identifier: Apache-2.0
#include "SwatchGrid.h"

#include "Swatch.h"

#include <QGraphicsOpacityEffect>
#include <QGridLayout>

#include <iterator>

namespace gallery {
namespace {

// How wide each column is, for the longest words in it.
constexpr int columnWidths[] = {9, 9, 10, 11, 12, 10};
constexpr std::size_t columns = std::size(columnWidths);

bool belongs(const QString& key, Group group) {
    const auto starts = [&](const char* word) { return key.startsWith(QLatin1String(word)); };
    const bool text = starts("background") || starts("label");
    const bool controls = starts("accent") || starts("control");
    const bool lists = starts("separator") || starts("table") || starts("overlayTable");
    const bool bars = starts("navigationBar") || starts("toolbar");
    switch (group) {
    case Group::Text:
        return text;
    case Group::Controls:
        return controls;
    case Group::Lists:
        return lists;
    case Group::Bars:
        return bars;
    case Group::Palette:
        return !text && !controls && !lists && !bars;
    case Group::All:
        return true;
    }
    return false;
}

QString keyAt(std::size_t index) {
    const auto key = zel::ZelStyleAttributeKeyOf(static_cast<zel::ZelStyleAttribute>(index));
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace

// Down the columns, so that what belongs together stands together.
SwatchGrid::SwatchGrid(QWidget* parent) : QWidget(parent) {
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    constexpr std::size_t rows = (zel::ZelStyleAttributeCount + columns - 1) / columns;
    for (std::size_t index = 0; index < zel::ZelStyleAttributeCount; ++index) {
        auto* const swatch = new Swatch(static_cast<zel::ZelStyleAttribute>(index), this);
        grid->addWidget(swatch, static_cast<int>(index % rows), static_cast<int>(index / rows));
        swatches_.push_back(swatch);
    }
    for (std::size_t column = 0; column < columns; ++column) {
        grid->setColumnStretch(static_cast<int>(column), columnWidths[column]);
    }
}

void SwatchGrid::emphasize(Group group) {
    for (Swatch* const swatch : swatches_) {
        if (belongs(swatch->key(), group)) {
            swatch->setGraphicsEffect(nullptr);
        } else {
            auto* const faint = new QGraphicsOpacityEffect;
            faint->setOpacity(0.15);
            swatch->setGraphicsEffect(faint); // takes it over
        }
    }
}

int SwatchGrid::countOf(Group group) {
    int count = 0;
    for (std::size_t index = 0; index < zel::ZelStyleAttributeCount; ++index) {
        count += belongs(keyAt(index), group) ? 1 : 0;
    }
    return count;
}

} // namespace gallery
