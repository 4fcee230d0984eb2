// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/NSView.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <memory>
#include <vector>

namespace zel::inline v1 {

/// Controls a view that it makes when first asked for; styled by the default domain.
/// Owns: its view, its child controllers. Refers to: its parent controller, weakly.
/// Threads: a tree belongs to one thread, its host's main thread, in handlers and destructors as
/// well.
/// Failure: adding nil does nothing; adding a controller to itself or below itself raises
/// `std::invalid_argument`.
class ZEL_EXPORT NSViewController : public NSObject, public ZelStyleable {
public:
    NSViewController();
    ~NSViewController() override;

    /// `view`, `setView:`. Reading loads it on the first request.
    [[nodiscard]] const std::shared_ptr<NSView>& view();
    void setView(std::shared_ptr<NSView> view);
    /// `loadView`: makes the view; a plain one unless overridden, through `setView`.
    virtual void loadView();
    /// `isViewLoaded`; never loads it.
    [[nodiscard]] bool isViewLoaded() const noexcept { return view_ != nullptr; }

    /// `addChildViewController:` and `removeFromParentViewController`
    void addChildViewController(const std::shared_ptr<NSViewController>& child);
    void removeFromParentViewController();
    /// `parentViewController` and `childViewControllers`
    [[nodiscard]] std::shared_ptr<NSViewController> parentViewController() const {
        return parent_.lock();
    }
    [[nodiscard]] const std::vector<std::shared_ptr<NSViewController>>&
    childViewControllers() const {
        return children_;
    }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept final { return this; }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept final { return &node_; }
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    /// The parent controller; always, since a change below it is found by walking down.
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const final;
    /// Exactly the view, once it is loaded; none before. Never loads it.
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<NSObject>>>
    associatedZelStyleables() const override;

private:
    ZelStyleableNode node_{*this};
    std::shared_ptr<NSView> view_;
    std::weak_ptr<NSViewController> parent_;
    std::vector<std::shared_ptr<NSViewController>> children_;
};

} // namespace zel::inline v1
