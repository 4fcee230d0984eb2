// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtStyleable.h>

#include "QtWidgetLink.h"

namespace zel::inline v1 {

std::shared_ptr<ZelQtStyleable> ZelQtStyleable::of(QWidget& widget) {
    return QtWidgetLink::of(widget).styleable();
}

void ZelQtStyleable::setOwner(QWidget& window, QWidget* owner) {
    QtWidgetLink::of(window).setOwner(owner);
}

ZelQtStyleable::~ZelQtStyleable() {
    node_.leave();
}

std::optional<std::string> ZelQtStyleable::domainIdentifierOfZelStyleable() const {
    return std::nullopt;
}

std::shared_ptr<NSObject> ZelQtStyleable::parentZelStyleable() const {
    return parent_.lock();
}

const ZelStyleableNode* ZelQtStyleable::zelStyleableNode() const noexcept {
    return &node_;
}

// Answers whether the parent is another one than before.
bool ZelQtStyleable::setParent(const std::shared_ptr<ZelQtStyleable>& parent) {
    if (parent == parent_.lock()) {
        return false;
    }
    parent_ = parent;
    node_.setParent(parent ? &parent->node_ : nullptr);
    return true;
}

// Whoever still holds the object hears no more of it: its handlers speak for a widget that is gone.
void ZelQtStyleable::end() {
    widget_ = nullptr;
    parent_.reset();
    node_.leave();
    unregisterStyleableChangeHandlers();
}

} // namespace zel::inline v1
