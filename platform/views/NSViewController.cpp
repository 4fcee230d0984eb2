// SPDX-License-Identifier: Apache-2.0
#include "platform/views/TreeLinks.h"

#include <ZelStyleKit/NSViewController.h>

namespace zel::inline v1 {

NSViewController::NSViewController() = default;

NSViewController::~NSViewController() {
    node_.leave();
    endChildren(*this, children_);
}

const std::shared_ptr<NSView>& NSViewController::view() {
    if (!view_) {
        loadView();
    }
    return view_;
}

void NSViewController::setView(std::shared_ptr<NSView> view) {
    view_ = std::move(view);
}

void NSViewController::loadView() {
    setView(alloc<NSView>());
}

void NSViewController::addChildViewController(const std::shared_ptr<NSViewController>& child) {
    if (!child) {
        return;
    }
    if (child.get() == this || !child->children_.empty()) { // nothing stands below any other one
        requireNotBelow(*child, shared_from_this(),
                        [](const NSViewController& each) { return each.parentViewController(); });
    }
    const std::shared_ptr<NSViewController> kept = child;
    kept->removeFromParentViewController();
    children_.push_back(kept);
    kept->parent_ = std::static_pointer_cast<NSViewController>(shared_from_this());
    kept->node_.setParent(&node_);
}

void NSViewController::removeFromParentViewController() {
    if (const auto parent = parent_.lock()) {
        const auto self = shared_from_this(); // the parent may be the only one to hold it
        parent_.reset();
        node_.setParent(nullptr);
        eraseLink(parent->children_, *this);
    }
}

} // namespace zel::inline v1
