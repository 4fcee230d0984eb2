// SPDX-License-Identifier: Apache-2.0
#include "styleable/StyleableTree.h"

#include <ZelStyleKit/ZelStyleable.h>

namespace zel::inline v1 {

namespace {

/// Adds an object's identifiers, each unless something below has set it.
void addUnset(StyleableTree::Binding& binding, const StylingState& state) ZEL_REQUIRES(linkLock) {
    if (!binding.scheme && state.schemeIdentifier) {
        binding.scheme = &state.schemeIdentifier;
    }
    if (!binding.style && state.styleIdentifier) {
        binding.style = &state.styleIdentifier;
    }
}

} // namespace

const ZelStyleableNode* StyleableTree::nodeOf(const NSObject& object) noexcept {
    const ZelStyleable* conforming = object.asZelStyleable();
    return conforming ? conforming->zelStyleableNode() : nullptr;
}

// Objects have the binding of their parent but for what they set themselves: the one found for a
// node is that of the nodes above it too, up to and with the first that sets something.
StyleableTree::Binding StyleableTree::bindingOf(const ZelStyleableNode& node) {
    Binding binding{.epoch = bindingChanges.now()};
    const ZelStyleableNode* end = &node; // the node above the last one that shares it
    bool isShared = true;
    for (const ZelStyleableNode* each = &node; each; each = each->parent_) {
        const Binding above = rememberedOf(*each);
        if (above.epoch == binding.epoch) {
            binding.scheme = binding.scheme ? binding.scheme : above.scheme;
            binding.style = binding.style ? binding.style : above.style;
            break;
        }
        if (isShared) {
            end = each->parent_;
        }
        const auto* state = Attachment::find<StylingState>(each->object_);
        if (state && state->hasIdentifiers()) {
            isShared = false;
            addUnset(binding, *state);
            if (binding.scheme && binding.style) {
                break;
            }
        }
    }
    for (const ZelStyleableNode* each = &node; each != end; each = each->parent_) {
        remember(*each, binding);
    }
    return binding;
}

AppliedIdentifiers StyleableTree::identifiersOf(const Binding& binding) {
    return {binding.scheme ? *binding.scheme : nullptr, binding.style ? *binding.style : nullptr};
}

void StyleableTree::invalidate(const ZelStyleableNode& node) noexcept {
    const auto* state = Attachment::find<StylingState>(node.object_);
    node.remembered_.epoch.store(0, std::memory_order_release);
    if (node.firstChild_ || (state && state->listeners)) {
        bindingChanges.increment();
    }
}

bool StyleableTree::isAtOrBelow(const ZelStyleableNode& node, const NSObject& object) noexcept {
    const ZelStyleableNode* each = &node;
    while (each && &each->object_ != &object) {
        each = each->parent_;
    }
    return each != nullptr;
}

ZelStyleableNode::~ZelStyleableNode() {
    leave();
    const PrivateGuard guard(linkLock);
    if (auto* state = Attachment::find<StylingState>(object_)) {
        state->node = nullptr;
    }
}

void ZelStyleableNode::leave() noexcept {
    const PrivateGuard guard(linkLock);
    StyleableTree::invalidate(*this);
    while (ZelStyleableNode* child = firstChild_) {
        firstChild_ = child->nextSibling_;
        child->parent_ = child->nextSibling_ = child->previousSibling_ = nullptr;
    }
    detach();
}

void ZelStyleableNode::setParent(ZelStyleableNode* parent) noexcept {
    const PrivateGuard guard(linkLock);
    if (parent == parent_) {
        return;
    }
    detach();
    if (parent) {
        parent_ = parent;
        nextSibling_ = parent->firstChild_;
        if (nextSibling_) {
            nextSibling_->previousSibling_ = this;
        }
        parent->firstChild_ = this;
    }
    StyleableTree::invalidate(*this);
}

// The lock is held.
void ZelStyleableNode::detach() noexcept {
    if (!parent_) {
        return;
    }
    (previousSibling_ ? previousSibling_->nextSibling_ : parent_->firstChild_) = nextSibling_;
    if (nextSibling_) {
        nextSibling_->previousSibling_ = previousSibling_;
    }
    parent_ = nextSibling_ = previousSibling_ = nullptr;
}

} // namespace zel::inline v1
