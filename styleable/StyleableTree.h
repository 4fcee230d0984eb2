// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "styleable/StylingState.h"

#include <ZelStyleKit/ZelStyleableNode.h>

#include <cstdint>

namespace zel {
inline namespace v1 {

/// The identifiers that apply to an object: each its own or the nearest above it, found
/// independently; nil where there is none.
struct AppliedIdentifiers {
    Identifier scheme;
    Identifier style;
};

/// The trees whose links the library knows. Everything but `linkLock`'s own acquisition is the
/// caller's: each operation needs it held.
struct StyleableTree {
    /// What applies to a node's object, as the places where it is kept: the identifiers of its
    /// own or of an object above it. Good for as long as the lock is held, and later as long as
    /// `bindingChanges` says the same.
    using Binding = ZelStyleableNode::Binding;

    /// The binding of a node, remembered or found by walking up; remembered on the way as far as it
    /// is the same.
    static const Binding& bindingOf(const ZelStyleableNode& node) ZEL_REQUIRES(linkLock) {
        return bindingOf(node, bindingChanges.now());
    }
    /// The same where `bindingChanges` has been read already.
    static const Binding& bindingOf(const ZelStyleableNode& node, std::uint64_t epoch)
        ZEL_REQUIRES(linkLock) {
        return node.binding_.epoch == epoch ? node.binding_ : findBinding(node, epoch);
    }
    /// What a binding refers to, held.
    static AppliedIdentifiers identifiersOf(const Binding& binding) ZEL_REQUIRES(linkLock);

    /// What was remembered of a node's object and of those below it is no longer right. Nothing is
    /// remembered elsewhere of an object with neither children nor listeners, so that building a
    /// tree doesn't invalidate the others'.
    static void invalidate(const ZelStyleableNode& node) noexcept ZEL_REQUIRES(linkLock);

    /// Whether the node, or one above it, is that object's.
    static bool isAtOrBelow(const ZelStyleableNode& node, const NSObject& object) noexcept
        ZEL_REQUIRES(linkLock);

    /// Calls `visit`, which calls nobody, for each node at and below this one, parents first.
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
        ZEL_REQUIRES(linkLock);
    static const Binding& findBinding(const ZelStyleableNode& node, std::uint64_t epoch)
        ZEL_REQUIRES(linkLock);
};

} // namespace v1
} // namespace zel
