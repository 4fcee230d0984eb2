// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProxyStyle>

namespace gallery {

/// Qt's Fusion style with flat, round controls. Knows no colours but those of the palette, which is
/// made from the widget's style.
class SoftStyle : public QProxyStyle {
public:
    SoftStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
};

} // namespace gallery
