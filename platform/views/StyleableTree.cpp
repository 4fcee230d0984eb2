// SPDX-License-Identifier: Apache-2.0
#include "platform/views/StyleableTree.h"

namespace zel {
inline namespace v1 {

constinit std::atomic<std::uint64_t> ZelStyleableTree::linkChanges_{0};

std::mutex& ZelStyleableTree::lock() noexcept {
    static auto* const lock = new std::mutex; // never destroyed: objects may end at exit
    return *lock;
}

// An object without any below it concerns itself alone; a tree is mostly built from such.
void ZelStyleableTree::forgetBindings(const ZelStyleableNode& node) noexcept {
    if (node.firstChild_) {
        BindingEpoch::advance();
    } else if (ObjectState* state = ObjectState::find(node.object_)) {
        state->binding.clear();
    }
}

StyleBinding ZelStyleableTree::bindingOf(const ZelStyleableNode& node) {
    const std::scoped_lock guard(lock());
    return bindingWhileLocked(node);
}

bool ZelStyleableTree::isAtOrBelow(const ZelStyleableNode& node, const NSObject& object) noexcept {
    const std::scoped_lock guard(lock());
    const ZelStyleableNode* each = &node;
    while (each && &each->object_ != &object) {
        each = each->parent_;
    }
    return each != nullptr;
}

StyleBinding ZelStyleableTree::findBinding(const ZelStyleableNode& node, std::uint64_t epoch) {
    std::optional<StyleBinding> binding;
    for (const ZelStyleableNode* each = &node; each && !binding; each = each->parent_) {
        const ObjectState* state = ObjectState::find(each->object_);
        if (!state) {
            continue;
        }
        binding = state->binding.load(epoch);
        if (!binding && state->hasCustomIdentifiers()) {
            binding = styleBindingOf(appliedUpwards(*each, epoch));
        }
    }
    rememberUpwards(node, binding.value_or(0), epoch);
    return binding.value_or(0);
}

/// What applies to a node's object, by walking up.
AppliedIdentifiers ZelStyleableTree::appliedUpwards(const ZelStyleableNode& from,
                                                    std::uint64_t epoch) {
    AppliedIdentifiers applied;
    for (const ZelStyleableNode* each = &from; each; each = each->parent_) {
        const ObjectState* state = ObjectState::find(each->object_);
        if (!state) {
            continue;
        }
        if (const auto bound = state->binding.load(epoch)) {
            const AppliedIdentifiers above = appliedIdentifiersOf(*bound);
            applied.scheme = applied.scheme ? applied.scheme : above.scheme;
            applied.style = applied.style ? applied.style : above.style;
            break;
        }
        if (!applied.scheme) {
            applied.scheme = state->customZelStyleSchemeIdentifier.load();
        }
        if (!applied.style) {
            applied.style = state->customZelStyleIdentifier.load();
        }
        if (applied.scheme && applied.style) {
            break;
        }
    }
    return applied;
}

// Objects above have the same binding up to, and with, the first that sets an identifier itself.
void ZelStyleableTree::rememberUpwards(const ZelStyleableNode& from, StyleBinding binding,
                                       std::uint64_t epoch) noexcept {
    for (const ZelStyleableNode* each = &from; each; each = each->parent_) {
        ObjectState* state = ObjectState::find(each->object_);
        if (!state) {
            continue;
        }
        if (state->binding.load(epoch)) {
            return;
        }
        state->binding.store(binding, epoch);
        if (state->hasCustomIdentifiers()) {
            return;
        }
    }
}

ZelStyleableNode::~ZelStyleableNode() {
    leave();
}

void ZelStyleableNode::leave() noexcept {
    const std::scoped_lock guard(ZelStyleableTree::lock());
    ZelStyleableTree::forgetBindings(*this);
    while (ZelStyleableNode* child = firstChild_) {
        firstChild_ = child->nextSibling_;
        child->parent_ = child->nextSibling_ = child->previousSibling_ = nullptr;
    }
    detach();
    ZelStyleableTree::noteLinkChange();
}

void ZelStyleableNode::setParent(ZelStyleableNode* parent) noexcept {
    const std::scoped_lock guard(ZelStyleableTree::lock());
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
    ZelStyleableTree::forgetBindings(*this);
    ZelStyleableTree::noteLinkChange();
}

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

} // namespace v1
} // namespace zel
