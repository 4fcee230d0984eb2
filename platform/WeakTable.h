// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ObjectState.h"
#include "platform/RecursiveLock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

class WeakTableBase;

/// One key of a weak-keyed table. Its address is stable while the table is walked or called from.
struct WeakTableEntry {
    std::weak_ptr<NSObject> owner;
    ObjectState* state = nullptr;          ///< the owner's; nothing once the entry was removed
    WeakTableEntry* nextOfOwner = nullptr; ///< guarded by ObjectState::linkLock()
    WeakTableBase* table = nullptr;
};

/// What a weak-keyed table is to the objects that are its keys.
class WeakTableBase : public std::enable_shared_from_this<WeakTableBase> {
public:
    WeakTableBase() = default;
    virtual ~WeakTableBase() = default;
    WeakTableBase(const WeakTableBase&) = delete;
    WeakTableBase& operator=(const WeakTableBase&) = delete;

    /// Called by an ending owner: drops its entry with what it holds.
    virtual void ownerEnded(ObjectState& state) noexcept = 0;

    /// The table's lock. Recursive, and held for a whole walk, callbacks included.
    RecursiveLock lock;

protected:
    /// This table's entry of an owner's, or nothing.
    [[nodiscard]] WeakTableEntry* entryOf(const ObjectState& state) const noexcept;
    static void link(WeakTableEntry& entry, ObjectState& state) noexcept;
    static void unlink(WeakTableEntry& entry) noexcept;
    static void relink(WeakTableEntry& from, WeakTableEntry& to) noexcept;
};

/// A map from owners, held weakly, to payloads, in order of insertion. An entry goes, payload and
/// all, when its owner ends. Walks survive any change: what is removed isn't visited any more, what
/// is added isn't visited yet. Always made by `std::make_shared`.
/// Owns: the payloads. Refers to: the owners.
/// Threads: every operation but `Walk`'s wants `lock` held; a removed payload is handed out so that
/// it ends after the lock is released.
template <class Payload>
class WeakTable : public WeakTableBase {
public:
    struct Entry : WeakTableEntry {
        Payload payload;
        [[nodiscard]] bool isLive() const noexcept { return state != nullptr; }
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

    [[nodiscard]] bool isEmpty() const noexcept { return live_ == 0; }
    [[nodiscard]] std::size_t size() const noexcept { return live_; }
    /// Moves with every insertion, replacement and removal by hand, not with an owner's end.
    [[nodiscard]] std::uint64_t mutations() const noexcept { return mutations_; }
    void noteMutation() noexcept { ++mutations_; }

    [[nodiscard]] Entry* find(const NSObject& owner) const noexcept {
        const ObjectState* state = ObjectState::find(owner);
        return state ? static_cast<Entry*>(entryOf(*state)) : nullptr;
    }

    /// Adds an owner that has no entry yet, at the end.
    Entry& insert(const std::shared_ptr<NSObject>& owner, Payload payload) {
        ObjectState& state = ObjectState::of(*owner);
        compactIfWorthwhile();
        if (chunks_.empty() || chunks_.back().size() == chunks_.back().capacity()) {
            addChunk();
        }
        Entry& entry = chunks_.back().emplace_back();
        entry.owner = owner;
        entry.table = this;
        entry.payload = std::move(payload);
        link(entry, state);
        ++live_;
        ++mutations_;
        return entry;
    }

    /// Removes an entry and hands out its payload, or leaves that in place while it is being called
    /// (see `Call`).
    [[nodiscard]] Payload remove(Entry& entry) {
        ++mutations_;
        return takeOut(entry);
    }

    void ownerEnded(ObjectState& state) noexcept override {
        Payload payload;
        const RecursiveGuard guard(lock);
        if (auto* entry = static_cast<Entry*>(entryOf(state))) {
            payload = takeOut(*entry);
        }
    } // the guard goes first, then the payload

    /// Keeps an entry's payload in place for the time of a call into it, even where the call removes
    /// the entry. Made and ended with the lock held; the call itself may run without it.
    class Call {
    public:
        Call(WeakTable& table, Entry& entry) noexcept
            : table_(table), entry_(entry), next_(table.calls_) {
            if (next_) {
                next_->previous_ = this;
            }
            table.calls_ = this;
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call() {
            (previous_ ? previous_->next_ : table_.calls_) = next_;
            if (next_) {
                next_->previous_ = previous_;
            }
            if (!entry_.isLive() && !table_.isCalled(entry_)) {
                const Payload ending = std::exchange(entry_.payload, Payload());
            }
        }

    private:
        friend class WeakTable;
        WeakTable& table_;
        Entry& entry_;
        Call* next_;
        Call* previous_ = nullptr;
    };

    /// A walk over the entries there are now whose owners live, in order. Holds the lock. Nothing of
    /// it allocates.
    class Walk {
    public:
        explicit Walk(std::shared_ptr<WeakTable> table)
            : table_(std::move(table)), guard_(table_->lock),
              endChunk_(table_->chunks_.size()),
              endIndex_(table_->chunks_.empty() ? 0 : table_->chunks_.back().size()) {
            ++table_->walks_;
        }
        Walk(Walk&&) noexcept = default;
        Walk& operator=(Walk&&) = delete;
        ~Walk() {
            if (table_) {
                owner_.reset();
                --table_->walks_;
            }
        }

        /// The next entry, its owner held until the step after; nothing at the end.
        Entry* next() {
            owner_.reset();
            while (chunk_ < endChunk_) {
                auto& entries = table_->chunks_[chunk_];
                const std::size_t end = chunk_ + 1 == endChunk_ ? endIndex_ : entries.size();
                while (index_ < end) {
                    Entry& entry = entries[index_++];
                    if (entry.isLive() && (owner_ = entry.owner.lock())) {
                        return &entry;
                    }
                }
                ++chunk_;
                index_ = 0;
            }
            return nullptr;
        }
        [[nodiscard]] const std::shared_ptr<NSObject>& owner() const noexcept { return owner_; }

    private:
        std::shared_ptr<WeakTable> table_;
        RecursiveGuard guard_;
        std::shared_ptr<NSObject> owner_;
        std::size_t chunk_ = 0;
        std::size_t index_ = 0;
        std::size_t endChunk_;
        std::size_t endIndex_;
    };

private:
    static constexpr std::size_t largestChunk = 256;

    [[nodiscard]] bool isCalled(const Entry& entry) const noexcept {
        for (const Call* call = calls_; call; call = call->next_) {
            if (&call->entry_ == &entry) {
                return true;
            }
        }
        return false;
    }

    Payload takeOut(Entry& entry) {
        unlink(entry);
        entry.owner.reset();
        --live_;
        ++dead_;
        return isCalled(entry) ? Payload() : std::exchange(entry.payload, Payload());
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
        for (auto& chunk : chunks_) {
            for (Entry& entry : chunk) {
                if (entry.isLive()) {
                    Entry& moved = together.emplace_back();
                    relink(entry, moved);
                    moved.owner = std::move(entry.owner);
                    moved.payload = std::move(entry.payload);
                }
            }
        }
        chunks_.clear();
        chunks_.push_back(std::move(together));
        dead_ = 0;
    }

    std::vector<std::vector<Entry>> chunks_; // none grows past its capacity, so entries stay put
    Call* calls_ = nullptr;
    std::size_t live_ = 0;
    std::size_t dead_ = 0;
    std::size_t walks_ = 0;
    std::uint64_t mutations_ = 0;
};

} // namespace v1
} // namespace zel
