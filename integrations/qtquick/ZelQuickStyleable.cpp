// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQuickStyleable.h>

#include "QuickItemLink.h"

namespace zel::inline v1 {

std::shared_ptr<ZelQuickStyleable> ZelQuickStyleable::of(QQuickItem& item) {
    return QuickItemLink::of(item).styleable();
}

ZelQuickStyleable::~ZelQuickStyleable() {
    node_.leave();
}

std::optional<std::string> ZelQuickStyleable::domainIdentifierOfZelStyleable() const {
    return std::nullopt;
}

std::shared_ptr<NSObject> ZelQuickStyleable::parentZelStyleable() const {
    return parent_.lock();
}

const ZelStyleableNode* ZelQuickStyleable::zelStyleableNode() const noexcept {
    return &node_;
}

// Answers whether the parent is another one than before.
bool ZelQuickStyleable::setParent(const std::shared_ptr<ZelQuickStyleable>& parent) {
    if (parent == parent_.lock()) {
        return false;
    }
    parent_ = parent;
    node_.setParent(parent ? &parent->node_ : nullptr);
    return true;
}

// Whoever still holds the object hears no more of it: its handlers speak for an item that is gone.
void ZelQuickStyleable::end() {
    item_ = nullptr;
    parent_.reset();
    node_.leave();
    unregisterStyleableChangeHandlers();
}

} // namespace zel::inline v1
