// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleable.h>

#include <ZelStyleKit/NSView.h>
#include <ZelStyleKit/NSViewController.h>
#include <ZelStyleKit/ZelStyleDomain.h>

namespace zel::inline v1 {

ZelStyleable::~ZelStyleable() = default;

std::optional<std::vector<std::shared_ptr<NSObject>>>
ZelStyleable::associatedZelStyleables() const {
    return std::nullopt;
}

const ZelStyleableNode* ZelStyleable::zelStyleableNode() const noexcept {
    return nullptr;
}

// How the platform's views and view controllers take part.

std::optional<std::string> NSView::domainIdentifierOfZelStyleable() const {
    return std::string(ZelStyleDomainIdentifierDefault);
}

std::shared_ptr<NSObject> NSView::parentZelStyleable() const {
    return superview();
}

std::optional<std::string> NSViewController::domainIdentifierOfZelStyleable() const {
    return std::string(ZelStyleDomainIdentifierDefault);
}

std::shared_ptr<NSObject> NSViewController::parentZelStyleable() const {
    return parentViewController();
}

std::optional<std::vector<std::shared_ptr<NSObject>>>
NSViewController::associatedZelStyleables() const {
    if (!isViewLoaded()) {
        return std::nullopt;
    }
    return std::vector<std::shared_ptr<NSObject>>{view_};
}

} // namespace zel::inline v1
