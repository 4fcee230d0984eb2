// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "integrations/qt6/StyleListener.h"

#include <ZelStyleKit/ZelQuickStyleable.h>

#include <QObject>

#include <memory>

class QQuickItem;

namespace zel::inline v1 {

/// Ties an item to its styleable, and sees to it that the styleable stands where the item does. A
/// child object of the item, so that it ends with it.
/// Owns: the styleable. Refers to: the item that owns it. Threads: the main thread.
class QuickItemLink final : public QObject {
    Q_OBJECT

public:
    /// The item's link, made where there is none.
    static QuickItemLink& of(QQuickItem& item);

    ~QuickItemLink() override;
    QuickItemLink(const QuickItemLink&) = delete;
    QuickItemLink& operator=(const QuickItemLink&) = delete;

    [[nodiscard]] const std::shared_ptr<ZelQuickStyleable>& styleable() const { return styleable_; }
    /// A listener of its own below the item's styleable, for as long as it is held.
    [[nodiscard]] std::shared_ptr<StyleListener> makeListener() const;

private:
    explicit QuickItemLink(QQuickItem& item);
    [[nodiscard]] QQuickItem* itemAbove() const;
    [[nodiscard]] bool updateParent();
    void watch();
    /// The item, or what it belongs to, may be in another place.
    Q_SLOT void resolveAnew();
    void watchOwner();
    void ownerEnded();

    QQuickItem& item_;
    const std::shared_ptr<ZelQuickStyleable> styleable_;
    QMetaObject::Connection ownersEnd_; // of a window's transient parent
};

} // namespace zel::inline v1
