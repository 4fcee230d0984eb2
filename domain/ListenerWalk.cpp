// SPDX-License-Identifier: Apache-2.0
#include "domain/ListenerWalk.h"

#include "styleable/StyleableTree.h"

#include <ZelStyleKit/ZelStyleable.h>

#include <algorithm>
#include <utility>

namespace zel::inline v1 {
namespace {

const ZelStyleableNode* nodeOf(const std::shared_ptr<NSObject>& object) {
    const ZelStyleable* styleable = object ? object->asZelStyleable() : nullptr;
    return styleable ? styleable->zelStyleableNode() : nullptr;
}

} // namespace

ListenerWalk::ListenerWalk(ListenerTable& table, FoundStyles& styles,
                           const std::shared_ptr<NSObject>& target, const ZelStyle* family)
    : table_(table), styles_(styles), target_(target.get()), list_{table.listed} {
    const ZelStyleableNode* const node = nodeOf(target);
    const PrivateGuard guard(linkLock);
    begin(node, family);
}

void ListenerWalk::begin(const ZelStyleableNode* node, const ZelStyle* family) {
    end_ = table_.places().size();
    if (target_) {
        beginListing();
        listTarget(node);
    } else if (const auto members = family ? table_.families.find(*family) : std::nullopt) {
        beginListing();
        styles_.setFamilyMoment(begun_);
        for (const Listener* each : *members) {
            list(*each);
        }
    }
    visitsAll_ = !isListed_;
    table_.beginWalk();
}

/// Begins with those that have to be asked.
void ListenerWalk::beginListing() {
    isListed_ = true;
    place_ = end_;
    list_.bits.resize(list_.begin + end_ / wordBits + 1);
    for (const Listener* each : table_.asked()) {
        list(*each);
    }
}

void ListenerWalk::listTarget(const ZelStyleableNode* node) {
    if (node == nullptr || table_.size() == 0) {
        return;
    }
    StyleableTree::forEachAtAndBelow(
        *node, [&](const ZelStyleableNode& each) ZEL_REQUIRES(linkLock) {
            const auto* state = Attachment::find<StylingState>(each.object());
            const Listener* listener = state ? table_.find(*state) : nullptr;
            if (listener && listener->kind == Listener::Kind::Known) {
                StyleableTree::bind(each, *state);
                list(*listener);
            }
        });
}

/// Goes on with the places behind the last one that was visited.
void ListenerWalk::leaveList() noexcept {
    isListed_ = false;
    testsEach_ = target_ != nullptr;
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
        return target_ ? nullptr : &styles_.main();
    }
    auto ancestry = ancestryOf(owner, target_);
    if (!listener.isLive() || (target_ && !ancestry.isBelowTarget)) {
        return nullptr;
    }
    return &styles_.of(std::move(ancestry.applied));
}

} // namespace zel::inline v1
