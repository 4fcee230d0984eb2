// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <memory>
#include <vector>

namespace zel::inline v1 {

/// A view in a tree of views; styled by the default domain.
/// Owns: its subviews. Refers to: its superview, weakly.
/// Threads: a tree belongs to one thread, its host's main thread, in handlers and destructors as
/// well.
/// Failure: adding nil does nothing; adding a view to itself or below itself raises
/// `std::invalid_argument`.
class ZEL_EXPORT NSView : public NSObject, public ZelStyleable {
public:
    NSView();
    ~NSView() override;

    /// `addSubview:`. Takes the view from where it was. Moving notifies nobody by itself.
    void addSubview(const std::shared_ptr<NSView>& view);
    /// `removeFromSuperview`
    void removeFromSuperview();

    /// `superview`; nil outside any hierarchy.
    [[nodiscard]] std::shared_ptr<NSView> superview() const { return superview_.lock(); }
    /// `subviews`, in the order in which they were added.
    [[nodiscard]] const std::vector<std::shared_ptr<NSView>>& subviews() const { return subviews_; }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept final { return this; }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept final { return &node_; }
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    /// The superview; always, since a change below it is found by walking down.
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const final;

private:
    ZelStyleableNode node_{*this};
    std::weak_ptr<NSView> superview_;
    std::vector<std::shared_ptr<NSView>> subviews_;
};

} // namespace zel::inline v1
