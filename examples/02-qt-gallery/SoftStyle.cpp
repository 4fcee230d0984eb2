// SPDX-License-Identifier: Apache-2.0
#include "SoftStyle.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>

namespace gallery {
namespace {

constexpr double radius = 6;

/// Saves the painter's state, and paints smoothly.
class Painting {
public:
    explicit Painting(QPainter* painter) : painter_(*painter) {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
    }
    ~Painting() { painter_.restore(); }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;

    void box(const QRectF& area, const QColor& fill, const QColor& edge, double corner = radius) {
        painter_.setPen(edge.isValid() ? QPen(edge, 1) : QPen(Qt::NoPen));
        painter_.setBrush(fill);
        painter_.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    }
    /// An open angle that points down, or up.
    void chevron(const QPointF& centre, const QColor& color, bool up = false) {
        const double rise = up ? -2 : 2;
        painter_.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawPolyline(QPolygonF{centre + QPointF(-3.5, -rise), centre + QPointF(0, rise),
                                        centre + QPointF(3.5, -rise)});
    }
    void tick(const QRectF& box, const QColor& color) {
        const auto at = [&](double x, double y) {
            return QPointF(box.x() + x * box.width(), box.y() + y * box.height());
        };
        painter_.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawPolyline(QPolygonF{at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.30)});
    }

private:
    QPainter& painter_;
};

bool isDefault(const QStyleOption* option) {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return button && (button->features & QStyleOptionButton::DefaultButton) != 0;
}

QColor edgeOf(const QStyleOption& option) {
    return option.palette.color(QPalette::Mid);
}

void paintButton(const QStyleOption& option, QPainter* painter) {
    const bool filled = isDefault(&option) && (option.state & QStyle::State_Enabled) != 0;
    QColor fill = option.palette.color(filled ? QPalette::Highlight : QPalette::Button);
    if ((option.state & (QStyle::State_Sunken | QStyle::State_On)) != 0) {
        fill = fill.darker(115);
    }
    Painting(painter).box(option.rect, fill, filled ? QColor() : edgeOf(option));
}

/// The box of a check box or, with round corners, of a radio button.
void paintIndicator(const QStyleOption& option, QPainter* painter, bool isRound) {
    Painting painting(painter);
    const double size = qMin(option.rect.width(), option.rect.height());
    QRectF box(0, 0, size, size);
    box.moveCenter(QRectF(option.rect).center());
    const bool on = (option.state & QStyle::State_On) != 0;
    const QColor mark = option.palette.color(QPalette::HighlightedText);
    painting.box(box, option.palette.color(on ? QPalette::Highlight : QPalette::Base),
                 on ? QColor() : edgeOf(option), isRound ? size / 2 : 4);
    if (on && isRound) {
        const double inset = size * 0.3;
        painting.box(box.adjusted(inset, inset, -inset, -inset), mark, QColor(), size);
    } else if (on) {
        painting.tick(box, mark);
    }
}

/// A thin bar, filled up to a part.
void paintBar(const QStyleOption& option, const QRectF& bar, double part, QPainter* painter) {
    Painting painting(painter);
    QColor groove = option.palette.color(QPalette::WindowText);
    groove.setAlphaF(0.14F);
    painting.box(bar, groove, QColor(), bar.height() / 2);
    QRectF filled = bar;
    filled.setWidth(qMax(bar.height(), bar.width() * part));
    painting.box(filled, option.palette.color(QPalette::Highlight), QColor(), bar.height() / 2);
}

QRectF barIn(const QRect& area) {
    QRectF bar(area.x(), 0, area.width(), 6);
    bar.moveCenter(QRectF(area).center());
    return bar;
}

void paintSlider(const QStyleOptionSlider& option, const QStyle& style, const QWidget* widget,
                 QPainter* painter) {
    const QRectF handle =
        style.subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, widget);
    const QRectF bar = barIn(option.rect);
    paintBar(option, bar, (handle.center().x() - bar.x()) / bar.width(), painter);
    QRectF knob(0, 0, 16, 16);
    knob.moveCenter(handle.center());
    const QColor white = option.palette.color(QPalette::HighlightedText);
    Painting(painter).box(knob, white, QColor(0, 0, 0, 60), knob.height() / 2);
}

} // namespace

SoftStyle::SoftStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void SoftStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    switch (element) {
    case PE_PanelButtonCommand:
        return paintButton(*option, painter);
    case PE_IndicatorCheckBox:
        return paintIndicator(*option, painter, false);
    case PE_IndicatorRadioButton:
        return paintIndicator(*option, painter, true);
    case PE_FrameFocusRect:
        return; // shown by the selection
    case PE_PanelLineEdit: {
        const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        if (frame && frame->lineWidth > 0) {
            Painting(painter).box(option->rect, option->palette.color(QPalette::Base),
                                  edgeOf(*option));
        }
        return;
    }
    case PE_PanelItemViewItem: {
        const bool isRound = widget && widget->property("roundSelection").toBool();
        if (isRound && (option->state & State_Selected) != 0) {
            Painting(painter).box(option->rect, option->palette.color(QPalette::Highlight),
                                  QColor());
            return;
        }
        break;
    }
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void SoftStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_PushButtonLabel && isDefault(option)) {
        QStyleOptionButton filled(*qstyleoption_cast<const QStyleOptionButton*>(option));
        filled.palette.setColor(QPalette::ButtonText,
                                filled.palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &filled, painter, widget);
        return;
    }
    if (element == CE_ProgressBar) {
        const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
        const double all = bar ? bar->maximum - bar->minimum : 0;
        if (all > 0) {
            paintBar(*option, barIn(option->rect), (bar->progress - bar->minimum) / all, painter);
        }
        return;
    }
    if (element == CE_HeaderSection) {
        painter->fillRect(option->rect, option->palette.color(QPalette::AlternateBase));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void SoftStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    if (control == CC_Slider) {
        paintSlider(*qstyleoption_cast<const QStyleOptionSlider*>(option), *this, widget, painter);
        return;
    }
    if (control != CC_ComboBox && control != CC_SpinBox) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const bool isChoice = control == CC_ComboBox;
    const QColor text = option->palette.color(QPalette::Text);
    Painting painting(painter);
    painting.box(option->rect, option->palette.color(isChoice ? QPalette::Button : QPalette::Base),
                 edgeOf(*option));
    const QPointF right(option->rect.right() - 12, QRectF(option->rect).center().y());
    if (isChoice) {
        painting.chevron(right, text);
    } else {
        painting.chevron(right - QPointF(0, 4.5), text, true);
        painting.chevron(right + QPointF(0, 4.5), text);
    }
}

int SoftStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 17;
    case PM_SliderLength:
        return 16;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

} // namespace gallery
