// SPDX-License-Identifier: Apache-2.0
#include "QuickItemLink.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QVariant>

#include <unordered_map>

namespace zel::inline v1 {
namespace {

using Links = std::unordered_map<const QQuickItem*, QuickItemLink*>;

// Never destroyed: items of static storage duration may end later.
Links& links() {
    static Links& links = *std::make_unique<Links>().release();
    return links;
}

/// The popup that an item stands for: the object that owns it, and whose contents are in it. The
/// type isn't public, so that its properties have to tell.
QObject* popupOf(const QQuickItem& item) {
    QObject* const owner = item.parent();
    if (!owner || owner->isWindowType() || qobject_cast<QQuickItem*>(owner)) {
        return nullptr;
    }
    const auto* const contents = owner->property("contentItem").value<QQuickItem*>();
    return contents && contents->parentItem() == &item ? owner : nullptr;
}

/// The window whose content item this is.
QQuickWindow* windowOf(const QQuickItem& item) {
    QQuickWindow* const window = item.window();
    return window && window->contentItem() == &item ? window : nullptr;
}

} // namespace

QuickItemLink& QuickItemLink::of(QQuickItem& item) {
    const auto found = links().find(&item);
    if (found != links().end()) {
        return *found->second;
    }
    return *std::unique_ptr<QuickItemLink>(new QuickItemLink(item)).release(); // the item owns it
}

QuickItemLink::QuickItemLink(QQuickItem& item)
    : QObject(&item), item_(item),
      styleable_(std::make_shared<ZelQuickStyleable>(ZelQuickStyleable::Making{}, item)) {
    styleable_->init();
    links().emplace(&item, this);
    (void)updateParent();
    watch();
}

QuickItemLink::~QuickItemLink() {
    links().erase(&item_);
    styleable_->end();
}

std::shared_ptr<StyleListener> QuickItemLink::makeListener() const {
    return std::make_shared<StyleListener>(styleable_, &styleable_->node_);
}

void QuickItemLink::watch() {
    connect(&item_, &QQuickItem::parentChanged, this, &QuickItemLink::resolveAnew);
    if (QObject* const popup = popupOf(item_)) {
        connect(popup, SIGNAL(parentChanged()), this, SLOT(resolveAnew()));
    }
    if (QQuickWindow* const window = windowOf(item_)) {
        connect(window, &QWindow::transientParentChanged, this, &QuickItemLink::watchOwner);
        watchOwner();
    }
}

// A window tells nobody when it loses its transient parent by that one's end.
void QuickItemLink::watchOwner() {
    QObject::disconnect(ownersEnd_);
    if (QWindow* const owner = windowOf(item_)->transientParent()) {
        ownersEnd_ = connect(owner, &QObject::destroyed, this, &QuickItemLink::ownerEnded);
    }
    resolveAnew();
}

// Told later: whoever is being destroyed may have more to end with it, this window included.
void QuickItemLink::ownerEnded() {
    (void)updateParent();
    NSMainQueue::mainQueue().async([weak = std::weak_ptr(styleable_)] {
        const auto styleable = weak.lock();
        if (styleable && styleable->item()) {
            ZelStyleDomain::domainForStyleable(styleable)->notifyForStyleChangeOf(styleable, {});
        }
    });
}

QQuickItem* QuickItemLink::itemAbove() const {
    if (const QObject* const popup = popupOf(item_)) {
        return popup->property("parent").value<QQuickItem*>();
    }
    if (const QQuickWindow* const window = windowOf(item_)) {
        const auto* const owner = qobject_cast<QQuickWindow*>(window->transientParent());
        return owner ? owner->contentItem() : nullptr;
    }
    return item_.parentItem();
}

// Every item above gets a link as well, so that a move of any of them is noticed.
bool QuickItemLink::updateParent() {
    QQuickItem* const above = itemAbove();
    auto parent = above ? of(*above).styleable_ : nullptr;
    if (parent && ZelStyleDomain::isEqualOrChildOf(parent, styleable_)) {
        parent = nullptr; // windows that are transient for each other: Qt lets them
    }
    return styleable_->setParent(parent);
}

// An item without a place is on its way to another one, or to its end; a window has its place.
void QuickItemLink::resolveAnew() {
    if (updateParent() && (styleable_->parentZelStyleable() || windowOf(item_))) {
        const auto styleable = styleable_;
        ZelStyleDomain::domainForStyleable(styleable)->notifyForStyleChangeOf(styleable, {});
    }
}

} // namespace zel::inline v1
