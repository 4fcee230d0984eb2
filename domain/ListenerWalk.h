// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenersByStyle.h"
#include "domain/SortByOrder.h"
#include "platform/objects/WeakTable.h"
#include "platform/views/StyleableTree.h"

#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <cstdint>
#include <memory>
#include <optional>

namespace zel {
inline namespace v1 {

/// A walk over the listeners of a table that a notification is for, in order: all of them, those at
/// and below a target, or those of a family of styles. Those below a target are found by walking
/// down its tree; only listeners whose parents the library doesn't know, marked in the table, are
/// asked for them. Where a handler changes meanwhile what this relies on, every listener still to
/// come is looked at.
template <class Payload>
class ListenerWalk {
public:
    using Table = WeakTable<Payload>;
    using Entry = typename Table::Entry;

    ListenerWalk(const std::shared_ptr<Table>& table, const std::shared_ptr<NSObject>& target)
        : walk_(table), table_(*table), target_(target), scratchBegin_(table->scratch.size()),
          end_(table->endOrder()) {
        if (target_) {
            collecting([this] { collectBelowTarget(); });
        }
    }
    [[nodiscard]] bool hasTarget() const noexcept { return target_ != nullptr; }
    [[nodiscard]] const std::shared_ptr<Table>& table() const noexcept { return walk_.table(); }
    /// The table's stamp now.
    [[nodiscard]] ListenerStamp stamp() const noexcept {
        return ListenerStamp::now(table_.places());
    }
    /// Limits a walk over all that hasn't begun to a style's family.
    void limitTo(const ListenersByStyle<Payload>& listeners, const ZelStyle& style) {
        stamp_ = stamp();
        collecting([&] {
            listeners.collect(table_, style);
            sortByOrder(table_.scratch, scratchBegin_);
        });
    }
    ListenerWalk(const ListenerWalk&) = delete;
    ListenerWalk& operator=(const ListenerWalk&) = delete;
    ~ListenerWalk() { table_.scratch.resize(scratchBegin_); }

    /// The next listener. Among all of them, the next that `wants` accepts by its entry alone;
    /// `wants` must accept whatever it can't judge without the owner.
    template <class Wants>
    Entry* next(Wants wants) {
        if (!hasCandidates_) {
            return walk_.next(wants);
        }
        for (;;) {
            walk_.release(); // may end the owner, and change whatever its end changes
            if (hasChanged()) {
                walk_.skipTo(nextOrder_);
                hasCandidates_ = !!target_;
                askAll_ = true;
                if (!target_) {
                    return walk_.next(wants);
                }
            }
            bool isFound = false;
            Entry* entry = askAll_ ? walk_.next() : nextCandidate(isFound);
            if (!entry) {
                return nullptr;
            }
            const bool isPresent = askAll_ || walk_.visit(*entry);
            if (isPresent && (isFound || !target_ || isConcerned()) && entry->isLive()) {
                return entry;
            }
        }
    }
    [[nodiscard]] const std::shared_ptr<NSObject>& owner() const noexcept { return walk_.owner(); }

private:
    template <class Collect>
    void collecting(Collect collect) {
        try {
            collect();
        } catch (...) { // no memory
            table_.scratch.resize(scratchBegin_);
            throw;
        }
        hasCandidates_ = true;
        found_ = scratchBegin_;
        scratchEnd_ = table_.scratch.size();
    }

    void collectBelowTarget() {
        const ZelStyleable* styleable = target_->asZelStyleable();
        const ZelStyleableNode* node = styleable ? styleable->zelStyleableNode() : nullptr;
        const std::scoped_lock treeGuard(ZelStyleableTree::lock());
        linkChanges_ = ZelStyleableTree::linkChanges();
        if (!node || table_.isEmpty()) {
            return;
        }
        const std::scoped_lock linkGuard(ObjectState::linkLock());
        ZelStyleableTree::forEachAtAndBelow(*node, [&](const ZelStyleableNode& each) {
            const ObjectState* state = ObjectState::find(each.object());
            if (Entry* entry = state ? table_.entryWhileLinksAreLocked(*state) : nullptr) {
                (void)ZelStyleableTree::bindingWhileLocked(each); // remembered for the call
                table_.scratch.push_back({entry, entry->order});
            }
        });
        sortByOrder(table_.scratch, scratchBegin_);
    }

    /// Whether the candidates may no longer be the right ones.
    [[nodiscard]] bool hasChanged() const noexcept {
        if (askAll_) {
            return false;
        }
        return target_ ? ZelStyleableTree::linkChanges() != linkChanges_ : stamp() != stamp_;
    }

    /// The next of those that were found and those that have to be asked, by order.
    Entry* nextCandidate(bool& isFound) {
        const auto& marked = table_.marked();
        Entry* found = found_ < scratchEnd_ ? table_.scratch[found_].entry : nullptr;
        Entry* asked = marked_ < marked.size() ? marked[marked_] : nullptr;
        isFound = found && (!asked || found->order < asked->order);
        Entry* entry = isFound ? found : asked;
        if (!entry || entry->order >= end_) {
            return nullptr;
        }
        ++(isFound ? found_ : marked_);
        if (found_ + ahead < scratchEnd_) {
            Table::prefetch(*table_.scratch[found_ + ahead].entry);
        }
        nextOrder_ = entry->order + 1;
        return entry;
    }

    // An object with a node isn't asked: its answer may belong to another thread than this one.
    [[nodiscard]] bool isConcerned() const {
        const ZelStyleable* styleable = owner()->asZelStyleable();
        const ZelStyleableNode* node = styleable ? styleable->zelStyleableNode() : nullptr;
        return node ? ZelStyleableTree::isAtOrBelow(*node, *target_)
                    : styleable && ZelStyleDomain::isEqualOrChildOf(owner(), target_);
    }

    static constexpr std::size_t ahead = 4; ///< candidates whose memory is asked for early

    typename Table::Walk walk_;
    Table& table_;
    const std::shared_ptr<NSObject>& target_;
    const std::size_t scratchBegin_; // this walk's part of the scratch, and how far it is
    std::size_t scratchEnd_ = 0;
    std::size_t found_ = 0;
    std::size_t marked_ = 0;
    std::uint32_t end_;
    std::uint32_t nextOrder_ = 0;
    std::uint64_t linkChanges_ = 0;      // when a target's listeners were found
    std::optional<ListenerStamp> stamp_; // when a family's were
    bool hasCandidates_ = false;
    bool askAll_ = false;
};

} // namespace v1
} // namespace zel
