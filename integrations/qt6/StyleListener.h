// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zel {
inline namespace v1 {

/// Listens to the style of an object from a place of its own below it: an object's first handler
/// alone hears of another style, and that one is the application's to register.
/// Refers to: the object above, weakly. Listens as long as it is held.
class StyleListener final : public NSObject, public ZelStyleable {
public:
    /// Listens below an object, whose node is `node`, or, without one, to the main style.
    StyleListener(std::weak_ptr<NSObject> above, ZelStyleableNode* node)
        : above_(std::move(above)) {
        node_.setParent(node);
    }
    ~StyleListener() override { node_.leave(); }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return std::nullopt;
    }
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override {
        return above_.lock();
    }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override {
        return &node_;
    }

private:
    ZelStyleableNode node_{*this};
    const std::weak_ptr<NSObject> above_;
};

} // namespace v1
} // namespace zel
