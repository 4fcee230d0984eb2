// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/objects/WeakTableBase.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

/// A map from owners, held weakly, to payloads, in order of insertion. An entry goes, payload and
/// all, when its owner ends. Walks survive any change: what is removed isn't visited any more, what
/// is added isn't visited yet. Always made by `std::make_shared`.
/// Owns: the payloads. Refers to: the owners.
/// Threads: every operation but `Walk`'s wants `lock` held; a removed payload is handed out, so
/// that it can end after the lock is released.
template <class Payload, LockRank Rank = LockRank::HandlerTable>
class WeakTable : public WeakTableBase {
public:
    WeakTable() { lock.setRank(Rank); }
    struct Entry : WeakTableEntry {
        Payload payload;
    };

    ~WeakTable() override {
        for (auto& chunk : chunks_) {
            for (Entry& entry : chunk) {
                if (entry.isLive()) {
                    unlink(entry);
                }
            }
        }
    }

    [[nodiscard]] bool isEmpty() const noexcept {
        lock.requireHeld();
        return live_ == 0;
    }
    [[nodiscard]] std::size_t size() const noexcept { return live_; }
    /// Moves with every insertion, replacement and removal by hand, not with an owner's end.
    [[nodiscard]] std::uint64_t mutations() const noexcept { return mutations_; }
    void noteMutation() noexcept {
        lock.requireHeld();
        ++mutations_;
    }
    /// Moves whenever an entry came, or one may have moved or have left its place for good.
    [[nodiscard]] std::uint64_t places() const noexcept { return places_; }

    [[nodiscard]] Entry* find(const NSObject& owner) const noexcept {
        lock.requireHeld();
        const ObjectState* state = ObjectState::find(owner);
        const bool mayHave = state && !state->entries.isUnused();
        return mayHave ? static_cast<Entry*>(entryOf(*state)) : nullptr;
    }

    /// Adds an owner that has no entry yet, at the end; a marked one is found again by `marked`.
    Entry& insert(const std::shared_ptr<NSObject>& owner, Payload payload, bool isMarked = false) {
        lock.requireHeld();
        ObjectState& state = ObjectState::of(*owner);
        compactIfWorthwhile();
        if (chunks_.empty() || chunks_.back().size() == chunks_.back().capacity()) {
            addChunk();
        }
        if (isMarked) {
            marked_.reserve(marked_.size() + 1 + marked_.size() / 2);
        }
        Entry& entry = chunks_.back().emplace_back();
        try {
            entry.table = number();
            entry.order = nextOrder_;
            link(entry, state);
        } catch (...) {
            chunks_.back().pop_back();
            throw;
        }
        ++nextOrder_;
        entry.owner = owner;
        entry.payload = std::move(payload);
        if (isMarked) {
            marked_.push_back(&entry);
        }
        ++live_;
        ++mutations_;
        ++places_;
        return entry;
    }

    /// Removes an entry and hands out its payload, or leaves that in place while it is being called
    /// (see `Call`).
    [[nodiscard]] Payload remove(Entry& entry) {
        lock.requireHeld();
        ++mutations_;
        unlink(entry);
        return takeOut(entry);
    }
    /// The same of an owner's entry, if it has one.
    [[nodiscard]] Payload remove(const NSObject& owner) {
        lock.requireHeld();
        ObjectState* state = ObjectState::find(owner);
        auto* entry = state ? static_cast<Entry*>(unlinkFrom(*state)) : nullptr;
        mutations_ += entry ? 1 : 0;
        return entry ? takeOut(*entry) : Payload();
    }

    void ownerEnded(ObjectState& state) noexcept override {
        Payload payload;
        const RecursiveGuard guard(lock);
        if (auto* entry = static_cast<Entry*>(unlinkFrom(state))) {
            payload = takeOut(*entry);
        }
    } // the guard goes first, then the payload

    /// The order that the next entry gets; those there are now have lower ones.
    [[nodiscard]] std::uint32_t endOrder() const noexcept { return nextOrder_; }
    /// The marked entries by order, removed ones among them.
    [[nodiscard]] const std::vector<Entry*>& marked() const noexcept { return marked_; }
    /// An owner's entry, by its state; for use while linkLock() is held.
    [[nodiscard]] Entry* entryWhileLinksAreLocked(const ObjectState& state) const noexcept {
        return static_cast<Entry*>(entryIn(state));
    }
    struct Ordered {
        Entry* entry;
        std::uint32_t order; ///< the entry's
    };
    /// Room for walks to keep entries in, each above what was there when it began.
    std::vector<Ordered> scratch;

    /// Asks for the memory of an owner that is to be called soon.
    // Owners stand anywhere in memory; taking hold of one waits for its counts, which stand just
    // before an object that came from std::make_shared. The first word of a weak pointer is where
    // the object is; were it anything else, nothing but time would be lost.
    static void prefetch(const Entry& entry) noexcept {
        std::uintptr_t object = 0;
        static_assert(sizeof object == sizeof(void*));
        std::memcpy(&object, static_cast<const void*>(&entry.owner), sizeof object);
        __builtin_prefetch(entry.state);
        __builtin_prefetch(reinterpret_cast<const void*>(object - 16), 1);
    }

    class Call; ///< keeps a payload in place while it is called
    class Walk; ///< visits the entries in order

private:
    static constexpr std::size_t largestChunk = 256;

    [[nodiscard]] bool isCalled(const Entry& entry) const noexcept {
        for (const Call* call = calls_; call; call = call->next_) {
            if (call->entry_ == &entry) {
                return true;
            }
        }
        return false;
    }

    // Of an entry that is unlinked already.
    Payload takeOut(Entry& entry) {
        entry.owner.reset();
        --live_;
        ++dead_;
        if (isCalled(entry)) {
            return Payload();
        }
        Payload payload = std::exchange(entry.payload, Payload());
        dropLastIfDead();
        return payload;
    }

    // The last entry leaves no hole, so that what comes and goes soon costs the others nothing.
    void dropLastIfDead() noexcept {
        auto& last = chunks_.back();
        if (walks_ > 0 || calls_ != nullptr || last.empty() || last.back().isLive()) {
            return;
        }
        if (!marked_.empty() && marked_.back() == &last.back()) {
            marked_.pop_back();
        }
        last.pop_back();
        --dead_;
        --nextOrder_;
        ++places_;
    }

    void addChunk() {
        std::size_t capacity = chunks_.empty() ? 1 : chunks_.back().capacity() * 2;
        chunks_.emplace_back().reserve(capacity < largestChunk ? capacity : largestChunk);
    }

    // Entries that are gone leave holes, so that the others keep their order and their place; once
    // most are holes, and nobody is looking, the rest moves together.
    void compactIfWorthwhile() {
        if (walks_ > 0 || calls_ != nullptr || dead_ <= live_ + 8) {
            return;
        }
        std::vector<Entry> together;
        together.reserve(live_ + live_ / 2 + 1);
        const std::scoped_lock links(ObjectState::linkLock());
        std::size_t nextMarked = 0; // the next of the marked to meet, and how many still live
        std::size_t liveMarked = 0;
        nextOrder_ = 0;
        for (auto& chunk : chunks_) {
            for (Entry& entry : chunk) {
                const bool isMarked = nextMarked < marked_.size() && marked_[nextMarked] == &entry;
                nextMarked += isMarked ? 1 : 0;
                if (entry.isLive()) {
                    Entry& moved = together.emplace_back();
                    moved.table = entry.table; // before the owner's links lead here
                    moved.order = nextOrder_++;
                    relink(entry, moved);
                    moved.owner = std::move(entry.owner);
                    moved.payload = std::move(entry.payload);
                    if (isMarked) {
                        marked_[liveMarked++] = &moved;
                    }
                }
            }
        }
        marked_.resize(liveMarked);
        chunks_.clear();
        chunks_.push_back(std::move(together));
        dead_ = 0;
    }

    std::vector<std::vector<Entry>> chunks_; // none grows past its capacity, so entries stay put
    std::vector<Entry*> marked_;
    std::uint32_t nextOrder_ = 0;
    Call* calls_ = nullptr;
    std::size_t live_ = 0;
    std::size_t dead_ = 0;
    std::size_t walks_ = 0;
    std::uint64_t mutations_ = 0;
    std::uint64_t places_ = 0;
};

} // namespace v1
} // namespace zel

#include "platform/objects/WeakTableCall.h"
#include "platform/objects/WeakTableWalk.h"
