// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <memory>
#include <optional>
#include <string>

class QWidget;

namespace zel::inline v1 {

/// What stands for a QWidget in styling: made when it is first asked for, ended with the widget.
/// Change handlers and identifiers are set on it. Its parent is the widget's parent, which for a
/// menu, popup, tooltip or dialog is the widget that owns it. A widget that is moved to another
/// parent is resolved anew with all that is below it, inside `QWidget::setParent`: a handler may
/// end its widget at any time but this, when it has to `deleteLater` the one that is moved.
/// Owns: nothing. Refers to: its widget, as long as that lives, and its parent, weakly; the widget
/// owns it. Who else holds it past the widget's end holds a root without listeners.
/// Threads: the main thread; handlers run on the one that updates a style. Failure: none.
class ZEL_EXPORT ZelQtStyleable final : public NSObject, public ZelStyleable {
    struct Making {};

public:
    /// The widget's styleable, always the same. Makes it, and those of all widgets above, where
    /// there is none yet.
    static std::shared_ptr<ZelQtStyleable> of(QWidget& widget);

    /// Says to which widget a window without a parent belongs, such as a context menu that was made
    /// without one; none ends it, and so does the owner's own end, of which the window is told on
    /// the main queue. A parent, where there is one, counts for more. An owner that is inside the
    /// window, or in one that belongs to it in turn, is none, and ceases to be one when it gets
    /// there.
    static void setOwner(QWidget& window, QWidget* owner);

    /// The widget; none once that has ended.
    [[nodiscard]] QWidget* widget() const noexcept { return widget_; }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    /// None: the default domain.
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override;
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override;

    /// Only `of` makes one.
    ZelQtStyleable(Making, QWidget& widget) noexcept : widget_(&widget) {}
    ~ZelQtStyleable() override;

private:
    friend class QtWidgetLink;
    bool setParent(const std::shared_ptr<ZelQtStyleable>& parent);
    void end();

    QWidget* widget_;
    ZelStyleableNode node_{*this};
    std::weak_ptr<ZelQtStyleable> parent_; // its object is always that of the node's parent
};

} // namespace zel::inline v1
