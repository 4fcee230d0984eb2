// SPDX-License-Identifier: Apache-2.0
#include "platform/views/TreeLinks.h"

#include <ZelStyleKit/NSView.h>

namespace zel::inline v1 {

NSView::NSView() = default;

// A subview that others hold goes on as the root of its own tree; its weak superview reads nil.
NSView::~NSView() {
    node_.leave();
    endChildren(*this, subviews_);
}

void NSView::addSubview(const std::shared_ptr<NSView>& view) {
    if (!view) {
        return;
    }
    if (view.get() == this || !view->subviews_.empty()) { // nothing stands below any other view
        requireNotBelow(*view, shared_from_this(),
                        [](const NSView& each) { return each.superview(); });
    }
    const std::shared_ptr<NSView> kept = view;
    kept->removeFromSuperview();
    subviews_.push_back(kept);
    kept->superview_ = std::static_pointer_cast<NSView>(shared_from_this());
    kept->node_.setParent(&node_);
}

void NSView::removeFromSuperview() {
    if (const auto superview = superview_.lock()) {
        const auto self = shared_from_this(); // the superview may be the only one to hold it
        superview_.reset();
        node_.setParent(nullptr);
        eraseLink(superview->subviews_, *this);
    }
}

} // namespace zel::inline v1
