// SPDX-License-Identifier: Apache-2.0
#include "Card.h"

#include "Words.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyle.h>

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace gallery {
namespace {

constexpr double cornerRadius = 10;

} // namespace

Card::Card(const QString& title, const QString& note, QWidget* parent)
    : QWidget(parent), contents_(new QVBoxLayout(this)) {
    contents_->setContentsMargins(18, 14, 18, 16);
    contents_->setSpacing(10);
    contents_->addWidget(makeTitle(title, 12, QFont::DemiBold));
    contents_->addWidget(makeNote(note, this));

    zel::ZelQtStyleable::of(*this)->registerStyleableChangeHandler(
        [this](const auto&, const auto& style, auto) {
            surface_ = zel::ZelQColorWithColor(style->backgroundColorTertiary());
            edge_ = zel::ZelQColorWithColor(style->separatorColorContent());
            update();
        });
}

void Card::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(surface_);
    painter.setPen(edge_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
}

} // namespace gallery
