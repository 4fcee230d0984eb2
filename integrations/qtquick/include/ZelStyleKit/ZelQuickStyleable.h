// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <memory>
#include <optional>
#include <string>

class QQuickItem;

namespace zel::inline v1 {

/// What stands for a QQuickItem in styling: made when it is first asked for, ended with the item.
/// Its parent is the item's parent item; for the item of a popup it is the item that the popup
/// belongs to, for a window's content item that of the window's transient parent; what would be
/// above itself that way has no parent. An item that is
/// put below another parent is resolved anew with all that is below it; one that is put nowhere
/// keeps what it was told last, until it has a place again.
/// Owns: nothing. Refers to: its item, as long as that lives, and its parent, weakly; the item owns
/// it. Who else holds it past the item's end holds a root without listeners.
/// Threads: the main thread; handlers run on the one that updates a style. Failure: none.
class ZEL_EXPORT ZelQuickStyleable final : public NSObject, public ZelStyleable {
    struct Making {};

public:
    /// The item's styleable, always the same. Makes it, and those of all items above, where there
    /// is none yet.
    static std::shared_ptr<ZelQuickStyleable> of(QQuickItem& item);

    /// The item; none once that has ended.
    [[nodiscard]] QQuickItem* item() const noexcept { return item_; }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    /// None: the default domain.
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override;
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override;

    /// Only `of` makes one.
    ZelQuickStyleable(Making, QQuickItem& item) noexcept : item_(&item) {}
    ~ZelQuickStyleable() override;

private:
    friend class QuickItemLink;
    bool setParent(const std::shared_ptr<ZelQuickStyleable>& parent);
    void end();

    QQuickItem* item_;
    ZelStyleableNode node_{*this};
    std::weak_ptr<ZelQuickStyleable> parent_; // its object is always that of the node's parent
};

} // namespace zel::inline v1
