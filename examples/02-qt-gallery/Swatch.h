// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyle.h>

#include <QColor>
#include <QString>
#include <QWidget>

namespace gallery {

/// One predefined attribute: its value in the style that applies here, and its name. A colour that
/// lets through what is below it is shown on a chessboard.
class Swatch : public QWidget {
public:
    Swatch(zel::ZelStyleAttribute attribute, QWidget* parent);

    [[nodiscard]] const QString& key() const noexcept { return key_; }
    /// The middle of the coloured part.
    [[nodiscard]] QPoint centre() const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void take(const zel::ZelStyle& style);
    void paintColor(QPainter& painter) const;
    void paintWords(QPainter& painter) const;

    const QString key_;
    QColor color_;  ///< invalid for a number
    QString value_; ///< as text
    QColor edge_;
    QColor label_;
    QColor faintLabel_;
};

} // namespace gallery
