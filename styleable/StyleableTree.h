// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "styleable/StylingState.h"

#include <ZelStyleKit/ZelStyleableNode.h>

#include <cstdint>

namespace zel::inline v1 {

/// The identifiers that apply to an object: each its own or the nearest above it, found
/// independently; nil where there is none.
struct AppliedIdentifiers {
    Identifier scheme;
    Identifier style;
    friend bool operator==(const AppliedIdentifiers& a, const AppliedIdentifiers& b) noexcept {
        return isSame(a.scheme, b.scheme) && isSame(a.style, b.style);
    }
};

/// The trees whose links the library knows. The caller holds `linkLock`, unless an
/// operation says otherwise.
struct StyleableTree {
    /// What applies to a node's object, as the places where it is kept: the identifiers of its
    /// own or of an object above it. Right for as long as `bindingChanges` says `epoch`.
    struct Binding {
        std::uint64_t epoch = 0; ///< 0: never
        const Identifier* scheme = nullptr;
        const Identifier* style = nullptr;
        friend bool operator==(const Binding&, const Binding&) noexcept = default;
    };

    /// An object's node, nil where it has none. Asks the host; no private lock is held.
    static const ZelStyleableNode* nodeOf(const NSObject& object) noexcept;

    /// The binding that a node remembers, right or not. Needs no lock, only that the node's object
    /// is held. If its epoch then equals `bindingChanges`, all three words belong together: they
    /// are rewritten only after a change.
    static Binding rememberedOf(const ZelStyleableNode& node) noexcept {
        const auto& words = node.remembered_;
        return {words.epoch.load(std::memory_order_acquire),
                words.scheme.load(std::memory_order_acquire),
                words.style.load(std::memory_order_acquire)};
    }
    /// The binding of a node, remembered or found by walking up; nodes passed on the way that have
    /// the same one remember it too.
    static Binding bindingOf(const ZelStyleableNode& node) ZEL_REQUIRES(linkLock);
    /// Has a node remember its binding, `state` being its object's. Most take over their parent's.
    static void bind(const ZelStyleableNode& node, const StylingState& state)
        ZEL_REQUIRES(linkLock) {
        if (node.parent_ && !state.hasIdentifiers()) [[likely]] {
            const Binding above = rememberedOf(*node.parent_);
            if (above.epoch == bindingChanges.now()) [[likely]] {
                return remember(node, above);
            }
        }
        (void)bindingOf(node);
    }
    /// What a binding refers to, held.
    static AppliedIdentifiers identifiersOf(const Binding& binding) ZEL_REQUIRES(linkLock);

    /// Forgets what was remembered of a node's object and of those below it. A node that has no
    /// children, and no listener, forgets alone: building a tree invalidates no other tree.
    static void invalidate(const ZelStyleableNode& node) noexcept ZEL_REQUIRES(linkLock);

    /// Whether the node, or one above it, is that object's.
    static bool isAtOrBelow(const ZelStyleableNode& node, const NSObject& object) noexcept
        ZEL_REQUIRES(linkLock);

    /// Calls `visit`, which must run no callback, for each node at and below this one, parents
    /// first.
    template <class Visit>
    static void forEachAtAndBelow(const ZelStyleableNode& root, Visit visit)
        ZEL_REQUIRES(linkLock) {
        for (const ZelStyleableNode* node = &root; node; node = nextInOrder(*node, root)) {
            __builtin_prefetch(node->nextSibling_);
            visit(*node);
        }
    }

private:
    static const ZelStyleableNode* nextInOrder(const ZelStyleableNode& node,
                                               const ZelStyleableNode& root) noexcept
        ZEL_REQUIRES(linkLock) {
        if (node.firstChild_) {
            return node.firstChild_;
        }
        const ZelStyleableNode* each = &node;
        while (each != &root && !each->nextSibling_) {
            each = each->parent_;
        }
        return each == &root ? nullptr : each->nextSibling_;
    }
    // The epoch last: whoever reads it has the rest.
    static void remember(const ZelStyleableNode& node, const Binding& binding) noexcept
        ZEL_REQUIRES(linkLock) {
        node.remembered_.scheme.store(binding.scheme, std::memory_order_release);
        node.remembered_.style.store(binding.style, std::memory_order_release);
        node.remembered_.epoch.store(binding.epoch, std::memory_order_release);
    }
};

} // namespace zel::inline v1
