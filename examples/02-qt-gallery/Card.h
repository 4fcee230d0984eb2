// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QWidget>

class QVBoxLayout;

namespace gallery {

/// A titled panel with round corners, in the colours of its style.
class Card : public QWidget {
public:
    Card(const QString& title, const QString& note, QWidget* parent);

    /// Where its contents go.
    [[nodiscard]] QVBoxLayout& contents() { return *contents_; }
    /// A point that shows nothing but the surface.
    [[nodiscard]] QPoint emptyPoint() const { return {6, height() / 2}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* const contents_;
    QColor surface_;
    QColor edge_;
};

} // namespace gallery
