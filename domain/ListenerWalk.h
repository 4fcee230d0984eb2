// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/StyleableTree.h"
#include "platform/WeakTable.h"

#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

/// A walk over the listeners of a table that a notification is for, in order: all of them, or those
/// at and below a target. The latter are found by walking down the target's tree; only listeners
/// whose parents the library doesn't know, marked in the table, are asked for them. Where a handler
/// moves something in a tree meanwhile, every listener still to come is asked.
template <class Payload>
class ListenerWalk {
public:
    using Table = WeakTable<Payload>;
    using Entry = typename Table::Entry;

    ListenerWalk(const std::shared_ptr<Table>& table, const std::shared_ptr<NSObject>& target)
        : walk_(table), table_(*table), target_(target), scratchBegin_(table->scratch.size()),
          end_(table->endOrder()) {
        try {
            collect();
        } catch (...) { // no memory
            table_.scratch.resize(scratchBegin_);
            throw;
        }
    }
    ListenerWalk(const ListenerWalk&) = delete;
    ListenerWalk& operator=(const ListenerWalk&) = delete;
    ~ListenerWalk() { table_.scratch.resize(scratchBegin_); }

    /// The next listener. Among all of them, the next that `wants` accepts by its entry alone;
    /// `wants` must accept whatever it can't judge without the owner.
    template <class Wants>
    Entry* next(Wants wants) {
        if (!target_) {
            return walk_.next(wants);
        }
        for (;;) {
            walk_.release(); // may end the owner, and move whatever its end moves
            if (!askAll_ && ZelStyleableTree::linkChanges() != linkChanges_) {
                walk_.skipTo(nextOrder_);
                askAll_ = true;
            }
            bool isFound = false;
            Entry* entry = askAll_ ? walk_.next() : nextCandidate(isFound);
            if (!entry) {
                return nullptr;
            }
            if ((askAll_ || walk_.visit(*entry)) && (isFound || isConcerned()) && entry->isLive()) {
                return entry;
            }
        }
    }
    [[nodiscard]] const std::shared_ptr<NSObject>& owner() const noexcept { return walk_.owner(); }

private:
    void collect() {
        if (!target_) {
            return;
        }
        const ZelStyleable* styleable = target_->asZelStyleable();
        const ZelStyleableNode* node = styleable ? styleable->zelStyleableNode() : nullptr;
        const std::scoped_lock treeGuard(ZelStyleableTree::lock());
        linkChanges_ = ZelStyleableTree::linkChanges();
        if (node) {
            const std::scoped_lock linkGuard(ObjectState::linkLock());
            ZelStyleableTree::forEachAtAndBelow(*node, [&](const NSObject& object) {
                const ObjectState* state = ObjectState::find(object);
                Entry* entry = state ? table_.entryWhileLinksAreLocked(*state) : nullptr;
                if (entry) {
                    table_.scratch.push_back(entry);
                }
            });
        }
        scratchEnd_ = table_.scratch.size();
        const auto begin = table_.scratch.begin() + static_cast<std::ptrdiff_t>(scratchBegin_);
        const auto byOrder = [](const Entry* a, const Entry* b) { return a->order < b->order; };
        if (!std::is_sorted(begin, table_.scratch.end(), byOrder)) {
            std::sort(begin, table_.scratch.end(), byOrder);
        }
        found_ = scratchBegin_;
    }

    /// The next of those found by walking down and those that have to be asked, by order.
    Entry* nextCandidate(bool& isFound) {
        const auto& marked = table_.marked();
        Entry* found = found_ < scratchEnd_ ? table_.scratch[found_] : nullptr;
        Entry* asked = marked_ < marked.size() ? marked[marked_] : nullptr;
        isFound = found && (!asked || found->order < asked->order);
        Entry* entry = isFound ? found : asked;
        if (!entry || entry->order >= end_) {
            return nullptr;
        }
        ++(isFound ? found_ : marked_);
        nextOrder_ = entry->order + 1;
        return entry;
    }

    [[nodiscard]] bool isConcerned() const {
        return owner()->asZelStyleable() && ZelStyleDomain::isEqualOrChildOf(owner(), target_);
    }

    typename Table::Walk walk_;
    Table& table_;
    const std::shared_ptr<NSObject>& target_;
    const std::size_t scratchBegin_; // this walk's part of the scratch, and how far it is
    std::size_t scratchEnd_ = 0;
    std::size_t found_ = 0;
    std::size_t marked_ = 0;
    std::uint32_t end_;
    std::uint32_t nextOrder_ = 0;
    std::uint64_t linkChanges_ = 0;
    bool askAll_ = false;
};

} // namespace v1
} // namespace zel
