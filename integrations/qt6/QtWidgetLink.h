// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StyleListener.h"

#include <ZelStyleKit/ZelQtStyleable.h>

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>

namespace zel::inline v1 {

/// Ties a widget to what the library keeps for it. A child object of the widget, so that it ends
/// with it, while it is a widget still; it sees the widget's events before the widget does.
/// Owns: the widget's styleable and palette listener. Refers to: the widget that owns it, and the
/// widget's owner, where it has one that isn't its parent. Threads: the main thread.
class QtWidgetLink final : public QObject {
public:
    /// The widget's link, made where there is none.
    static QtWidgetLink& of(QWidget& widget);
    /// The same, or none.
    static QtWidgetLink* find(const QWidget& widget) noexcept;

    ~QtWidgetLink() override;
    QtWidgetLink(const QtWidgetLink&) = delete;
    QtWidgetLink& operator=(const QtWidgetLink&) = delete;

    [[nodiscard]] const std::shared_ptr<ZelQtStyleable>& styleable() const { return styleable_; }
    void setOwner(QWidget* owner);
    /// The same of an owner that nobody named: it gives way to one that somebody does.
    void supposeOwner(QWidget* owner);

    /// Has a handler hear of the styles that apply to the widget, beside whatever handlers the
    /// styleable has itself; called at once, and on the main thread whoever changes them. None
    /// ends it.
    void setPaletteHandler(StyleListener::Handler handler);
    [[nodiscard]] bool hasPaletteHandler() const noexcept { return paletteListener_ != nullptr; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit QtWidgetLink(QWidget& widget);
    [[nodiscard]] QWidget* widgetAbove() const;
    void becomeOwned(QWidget* owner);
    void ownerEnded();
    [[nodiscard]] bool takePlace();
    void openRing();
    void resolveAnew();

    QWidget& widget_;
    QPointer<QWidget> owner_;
    QMetaObject::Connection ownersEnd_;
    bool isOwnerNamed_ = false;
    const std::shared_ptr<ZelQtStyleable> styleable_;
    std::shared_ptr<StyleListener> paletteListener_;
};

} // namespace zel::inline v1
