// SPDX-License-Identifier: Apache-2.0
#include "QtWidgetLink.h"

#include <ZelStyleKit/ZelStyleDomain.h>

#include <QEvent>

#include <unordered_map>

namespace zel {
inline namespace v1 {
namespace {

using Links = std::unordered_map<const QWidget*, QtWidgetLink*>;

// Never destroyed: widgets of static storage duration may end later.
Links& links() {
    static Links& links = *std::make_unique<Links>().release();
    return links;
}

} // namespace

QtWidgetLink* QtWidgetLink::find(const QWidget& widget) noexcept {
    const auto found = links().find(&widget);
    return found == links().end() ? nullptr : found->second;
}

QtWidgetLink& QtWidgetLink::of(QWidget& widget) {
    if (QtWidgetLink* const found = find(widget)) {
        return *found;
    }
    return *std::unique_ptr<QtWidgetLink>(new QtWidgetLink(widget)).release(); // the widget owns it
}

QtWidgetLink::QtWidgetLink(QWidget& widget)
    : QObject(&widget), widget_(widget),
      styleable_(std::make_shared<ZelQtStyleable>(ZelQtStyleable::Making{}, widget)) {
    styleable_->init();
    links().emplace(&widget, this);
    updateParent();
    widget.installEventFilter(this);
}

QtWidgetLink::~QtWidgetLink() {
    links().erase(&widget_);
    setPaletteHandler(nullptr);
    styleable_->end();
}

void QtWidgetLink::setOwner(QWidget* owner) {
    isOwnerNamed_ = owner != nullptr;
    owner_ = owner;
    resolveAnew();
}

void QtWidgetLink::supposeOwner(QWidget* owner) {
    if (!isOwnerNamed_) {
        owner_ = owner;
        resolveAnew();
    }
}

void QtWidgetLink::setPaletteHandler(StyleListener::Handler handler) {
    if (paletteListener_) {
        paletteListener_->stop();
        paletteListener_.reset();
    }
    if (handler) {
        paletteListener_ = std::make_shared<StyleListener>(styleable_, &styleable_->node_);
        paletteListener_->start(std::move(handler));
    }
}

bool QtWidgetLink::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ParentChange && watched == &widget_) {
        resolveAnew();
    }
    return false;
}

// Every widget above gets a link as well, so that a move of any of them is noticed.
bool QtWidgetLink::updateParent() {
    QWidget* const parent = widget_.parentWidget() ? widget_.parentWidget() : owner_.data();
    return styleable_->setParent(parent ? of(*parent).styleable_ : nullptr);
}

void QtWidgetLink::resolveAnew() {
    if (updateParent()) {
        const auto styleable = styleable_;
        ZelStyleDomain::domainForStyleable(styleable)->notifyForStyleChangeOf(styleable, {});
    }
}

} // namespace v1
} // namespace zel
