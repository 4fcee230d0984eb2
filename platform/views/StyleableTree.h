// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/objects/ObjectState.h"
#include "platform/objects/StyleBinding.h"

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace zel {
inline namespace v1 {

/// The trees whose links the library knows.
struct ZelStyleableTree {
    /// Guards every node's links. Inside it are only ObjectState::linkLock() and the lock of the
    /// pool of bindings.
    static std::mutex& lock() noexcept;

    /// Moves with every change of a link.
    [[nodiscard]] static std::uint64_t linkChanges() noexcept {
        return linkChanges_.load(std::memory_order_acquire);
    }
    static void noteLinkChange() noexcept { linkChanges_.fetch_add(1, std::memory_order_acq_rel); }

    /// Forgets what was bound to the node's object, and to all below it if there is anything. The
    /// lock is held.
    static void forgetBindings(const ZelStyleableNode& node) noexcept;

    /// The binding of the node's object, from its memo or by walking up; what was found on the way
    /// is remembered on the objects that have a state. Takes the lock.
    static StyleBinding bindingOf(const ZelStyleableNode& node);
    /// The same while the lock is held. Most objects set no identifier, and the one above them has
    /// been bound already: theirs is the same.
    static StyleBinding bindingWhileLocked(const ZelStyleableNode& node) {
        const std::uint64_t epoch = BindingEpoch::now();
        ObjectState* state = ObjectState::find(node.object_);
        const ObjectState* above =
            node.parent_ ? ObjectState::find(node.parent_->object_) : nullptr;
        const auto bound = above ? above->binding.load(epoch) : std::nullopt;
        if (!state || !bound || state->hasCustomIdentifiers()) {
            return findBinding(node, epoch);
        }
        state->binding.store(*bound, epoch);
        return *bound;
    }

    /// Whether the node, or one above it, is that object's. Takes the lock.
    static bool isAtOrBelow(const ZelStyleableNode& node, const NSObject& object) noexcept;

    /// Calls `visit` for each node at and below this one, parents first. The lock is
    /// held.
    template <class Visit>
    static void forEachAtAndBelow(const ZelStyleableNode& root, Visit visit) {
        const ZelStyleableNode* node = &root;
        while (node) {
            __builtin_prefetch(node->nextSibling_);
            visit(*node);
            node = nextInOrder(*node, root);
        }
    }

private:
    static const ZelStyleableNode* nextInOrder(const ZelStyleableNode& node,
                                               const ZelStyleableNode& root) noexcept {
        if (node.firstChild_) {
            return node.firstChild_;
        }
        const ZelStyleableNode* each = &node;
        while (each != &root && !each->nextSibling_) {
            each = each->parent_;
        }
        return each == &root ? nullptr : each->nextSibling_;
    }
    static StyleBinding findBinding(const ZelStyleableNode& node, std::uint64_t epoch);
    static AppliedIdentifiers appliedUpwards(const ZelStyleableNode& from, std::uint64_t epoch);
    static void rememberUpwards(const ZelStyleableNode& from, StyleBinding binding,
                                std::uint64_t epoch) noexcept;

    static constinit std::atomic<std::uint64_t> linkChanges_;
};

} // namespace v1
} // namespace zel
