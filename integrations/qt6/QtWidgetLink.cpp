// SPDX-License-Identifier: Apache-2.0
#include "QtWidgetLink.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <QEvent>

#include <unordered_map>

namespace zel::inline v1 {
namespace {

using Links = std::unordered_map<const QWidget*, QtWidgetLink*>;

// Never destroyed: widgets of static storage duration may end later.
Links& links() {
    static Links& links = *std::make_unique<Links>().release();
    return links;
}

void tell(const std::shared_ptr<ZelQtStyleable>& styleable) {
    const auto held = styleable; // a handler may end the link, and with it the reference
    ZelStyleDomain::domainForStyleable(held)->notifyForStyleChangeOf(held, {});
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
    (void)takePlace();
    widget.installEventFilter(this);
}

QtWidgetLink::~QtWidgetLink() {
    links().erase(&widget_);
    setPaletteHandler(nullptr);
    styleable_->end();
}

void QtWidgetLink::setOwner(QWidget* owner) {
    isOwnerNamed_ = owner != nullptr;
    becomeOwned(owner);
}

void QtWidgetLink::supposeOwner(QWidget* owner) {
    if (!isOwnerNamed_) {
        becomeOwned(owner);
    }
}

void QtWidgetLink::becomeOwned(QWidget* owner) {
    QObject::disconnect(ownersEnd_);
    owner_ = owner;
    if (owner) {
        ownersEnd_ = connect(owner, &QObject::destroyed, this, &QtWidgetLink::ownerEnded);
    }
    resolveAnew();
}

// Told later: whoever is being destroyed may have more to end with it, this widget included.
void QtWidgetLink::ownerEnded() {
    owner_ = nullptr;
    isOwnerNamed_ = false;
    (void)takePlace();
    NSMainQueue::mainQueue().async([weak = std::weak_ptr(styleable_)] {
        const auto styleable = weak.lock();
        if (styleable && styleable->widget()) {
            tell(styleable);
        }
    });
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

QWidget* QtWidgetLink::widgetAbove() const {
    return widget_.parentWidget() ? widget_.parentWidget() : owner_.data();
}

// Every widget above gets a link as well, so that a move of any of them is noticed.
bool QtWidgetLink::takePlace() {
    QWidget* const above = widgetAbove();
    return styleable_->setParent(above ? of(*above).styleable_ : nullptr);
}

// Parents alone make no ring: there is an owner in it, which counts no more. It is this widget's,
// or, where that has a parent, the one of the window that the parent is in.
void QtWidgetLink::openRing() {
    QWidget* top = &widget_;
    while (QWidget* const parent = top->parentWidget()) {
        top = parent;
    }
    of(*top).setOwner(nullptr);
}

void QtWidgetLink::resolveAnew() {
    QWidget* const above = widgetAbove();
    if (above && ZelStyleDomain::isEqualOrChildOf(of(*above).styleable_, styleable_)) {
        openRing();
    }
    if (takePlace()) {
        tell(styleable_);
    }
}

} // namespace zel::inline v1
