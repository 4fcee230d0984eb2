// SPDX-License-Identifier: Apache-2.0
#include "Words.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyle.h>

#include <QLabel>

namespace gallery {

QLabel* makeTitle(const QString& text, double points, QFont::Weight weight) {
    auto* const label = new QLabel(text);
    QFont font = label->font();
    font.setPointSizeF(points);
    font.setWeight(weight);
    label->setFont(font);
    return label;
}

QLabel* makeNote(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(9);
    label->setFont(font);
    label->setWordWrap(true);
    zel::ZelQtStyleable::of(*label)->registerStyleableChangeHandler(
        [label](const auto&, const auto& style, auto) {
            QPalette palette;
            palette.setColor(QPalette::WindowText,
                             zel::ZelQColorWithColor(style->labelColorSecondary()));
            label->setPalette(palette);
        });
    return label;
}

} // namespace gallery
