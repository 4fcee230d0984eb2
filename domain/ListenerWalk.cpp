// SPDX-License-Identifier: Apache-2.0
#include "domain/ListenerWalk.h"

#include "styleable/StyleableTree.h"

#include <ZelStyleKit/ZelStyleable.h>

#include <algorithm>
#include <utility>

namespace zel::inline v1 {

ListenerWalk::ListenerWalk(ListenerTable& table, FoundStyles& styles,
                           const std::shared_ptr<NSObject>& target, const ZelStyle* family)
    : table_(table), styles_(styles), target_(target.get()), listBegin_(table.listed.size()) {
    const ZelStyleableNode* const node = target ? StyleableTree::nodeOf(*target) : nullptr;
    const PrivateGuard guard(linkLock);
    const auto& places = table_.places();
    end_ = places.size();
    if (target) {
        beginList();
    } else if (family && table_.families.areKnown()) {
        beginList();
        styles_.setFamilyMoment(begun_);
        table_.families.forEachIn(family->token(),
                                  [this](const Listener* each) { addToList(*each); });
    }
    if (node) {
        StyleableTree::forEachAtAndBelow(
            *node, [this](const ZelStyleableNode& each) ZEL_REQUIRES(linkLock) {
                const auto* state = Attachment::find<StylingState>(each.object());
                const Listener* listener = state ? table_.find(*state) : nullptr;
                if (listener && listener->kind == Listener::Kind::Known) {
                    StyleableTree::bind(each, *state);
                    addToList(*listener);
                }
            });
    }
    table_.beginWalk();
}

/// Begins the list with those that have to be asked.
void ListenerWalk::beginList() {
    isListed_ = true;
    nextWord_ = end_ / wordBits + 1;
    table_.listed.resize(listBegin_ + nextWord_);
    for (const Listener* each : table_.asked()) {
        addToList(*each);
    }
}

/// Finds a node's binding, and those of the listeners that come next: after a change of bindings
/// `linkLock` is acquired once for many of them.
StyleableTree::Binding ListenerWalk::bindAhead(const ZelStyleableNode& node) {
    constexpr std::size_t count = 32;
    const auto& places = table_.places();
    const PrivateGuard guard(linkLock);
    for (std::size_t i = place_; i < std::min(place_ + count, end_); ++i) {
        const Listener* const each = places[i];
        if (each && each->isLive() && each->state->node) {
            StyleableTree::bind(*each->state->node, *each->state);
        }
    }
    return StyleableTree::bindingOf(node);
}

const FoundStyles::Found* ListenerWalk::resolve(const Listener& listener, const NSObject& owner) {
    if (listener.kind == Listener::Kind::Plain) {
        return target_ ? nullptr : &styles_.of(AppliedIdentifiers());
    }
    auto ancestry = ancestryOf(owner, target_);
    if (!listener.isLive() || (target_ && !ancestry.isBelowTarget)) {
        return nullptr;
    }
    return &styles_.of(std::move(ancestry.applied));
}

} // namespace zel::inline v1
