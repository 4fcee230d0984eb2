// SPDX-License-Identifier: Apache-2.0
#include "Swatch.h"

#include <ZelStyleKit/ZelQtColor.h>
#include <ZelStyleKit/ZelQtStyleable.h>

#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>

namespace gallery {
namespace {

constexpr int side = 38; // of the coloured part
constexpr double swatchRadius = 8;
constexpr int wordsAt = side + 10;

QString keyOf(zel::ZelStyleAttribute attribute) {
    const std::string_view key = zel::ZelStyleAttributeKeyOf(attribute);
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

/// Red, green and blue in hexadecimal, and how opaque where it isn't wholly.
QString textOf(const QColor& color) {
    QString text = color.name().toUpper();
    if (color.alpha() < 255) {
        text += QStringLiteral("  %1 %").arg(qRound(color.alphaF() * 100));
    }
    return text;
}

/// The key in up to two lines, broken before a capital letter.
QStringList linesOf(const QString& key, const QFontMetrics& metrics, int width) {
    if (metrics.horizontalAdvance(key) <= width) {
        return {key};
    }
    for (qsizetype length = key.size() - 1; length > 0; --length) {
        if (key[length].isUpper() && metrics.horizontalAdvance(key.left(length)) <= width) {
            return {key.left(length), key.mid(length)};
        }
    }
    return {key};
}

void paintChessboard(QPainter& painter, const QRect& area) {
    constexpr int field = 6;
    painter.fillRect(area, Qt::white);
    for (int y = 0; y * field < area.height(); ++y) {
        for (int x = y % 2; x * field < area.width(); x += 2) {
            painter.fillRect(area.x() + x * field, area.y() + y * field, field, field,
                             QColor(0xD0, 0xD0, 0xD0));
        }
    }
}

} // namespace

Swatch::Swatch(zel::ZelStyleAttribute attribute, QWidget* parent)
    : QWidget(parent), key_(keyOf(attribute)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    zel::ZelQtStyleable::of(*this)->registerStyleableChangeHandler(
        [this](const auto&, const auto& style, auto) { take(*style); });
}

QPoint Swatch::centre() const {
    return {side / 2, height() / 2};
}

QSize Swatch::sizeHint() const {
    return {wordsAt + 70, side + 6};
}

void Swatch::take(const zel::ZelStyle& style) {
    const auto value = style.effectiveValueForAttribute(key_.toStdString());
    const zel::NSColor* const color = value ? value->color() : nullptr;
    const zel::NSNumber* const number = value ? value->number() : nullptr;
    color_ = color ? zel::ZelQColorWithColor(*color) : QColor();
    value_ = color_.isValid() ? textOf(color_)
             : number         ? QString::number(number->doubleValue())
                              : QString();
    edge_ = zel::ZelQColorWithColor(style.separatorColor());
    label_ = zel::ZelQColorWithColor(style.labelColor());
    faintLabel_ = zel::ZelQColorWithColor(style.labelColorSecondary());
    setToolTip(key_ + QLatin1Char('\n') + value_);
    update();
}

void Swatch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintColor(painter);
    paintWords(painter);
}

void Swatch::paintColor(QPainter& painter) const {
    const QRect area(0, (height() - side) / 2, side, side);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), swatchRadius, swatchRadius);
    if (color_.isValid()) {
        painter.save();
        painter.setClipPath(shape);
        if (color_.alpha() < 255) {
            paintChessboard(painter, area);
        }
        painter.fillPath(shape, color_);
        painter.restore();
    }
    painter.strokePath(shape, QPen(edge_, 1));
    if (!color_.isValid()) {
        painter.setPen(label_);
        painter.drawText(area, Qt::AlignCenter, value_);
    }
}

void Swatch::paintWords(QPainter& painter) const {
    QFont font = painter.font();
    font.setPointSizeF(8.5);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    QStringList lines = linesOf(key_, metrics, width() - wordsAt);
    lines.append(value_);
    int y = (height() - static_cast<int>(lines.size()) * metrics.height()) / 2 + metrics.ascent();
    for (qsizetype index = 0; index < lines.size(); ++index) {
        painter.setPen(index + 1 < lines.size() ? label_ : faintLabel_);
        painter.drawText(wordsAt, y, lines[index]);
        y += metrics.height();
    }
}

} // namespace gallery
