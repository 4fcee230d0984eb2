// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ObjectState.h"
#include "platform/RecursiveLock.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

class WeakTableBase;

/// One key of a weak-keyed table. Its address is stable while the table is walked or called from.
struct WeakTableEntry {
    std::weak_ptr<NSObject> owner;
    ObjectState* state = nullptr; ///< the owner's; nothing once the entry was removed
    std::uint32_t table = 0;      ///< which table, by WeakTableBase::number()
    std::uint32_t order = 0;      ///< among the table's entries; moves together when they do

    [[nodiscard]] bool isLive() const noexcept { return state != nullptr; }
};

/// What a weak-keyed table is to the objects that are its keys.
class WeakTableBase : public std::enable_shared_from_this<WeakTableBase> {
public:
    WeakTableBase();
    virtual ~WeakTableBase();
    WeakTableBase(const WeakTableBase&) = delete;
    WeakTableBase& operator=(const WeakTableBase&) = delete;

    /// Called by an ending owner: drops its entry with what it holds.
    virtual void ownerEnded(ObjectState& state) noexcept = 0;

    /// The table of that number, or nothing where it is ending; linkLock() is held.
    static std::shared_ptr<WeakTableBase> withNumber(std::uint32_t number) noexcept;
    /// Tells the living tables of a process apart.
    [[nodiscard]] std::uint32_t number() const noexcept { return number_; }

    /// The table's lock. Recursive, and held for a whole walk, callbacks included.
    RecursiveLock lock;

protected:
    /// This table's entry of an owner's, or nothing.
    [[nodiscard]] WeakTableEntry* entryOf(const ObjectState& state) const noexcept;
    /// The same while linkLock() is held.
    [[nodiscard]] WeakTableEntry* entryIn(const ObjectState& state) const noexcept {
        return state.entries.find(
            [this](const WeakTableEntry& each) { return each.table == number_; });
    }
    static void link(WeakTableEntry& entry, ObjectState& state);
    static void unlink(WeakTableEntry& entry) noexcept;
    /// Takes this table's entry out of an owner's links, if there is one, and answers it.
    WeakTableEntry* unlinkFrom(ObjectState& state) noexcept;
    /// Puts an entry in another's place; linkLock() is held.
    static void relink(WeakTableEntry& from, WeakTableEntry& to) noexcept;

private:
    const std::uint32_t number_;
};

/// A map from owners, held weakly, to payloads, in order of insertion. An entry goes, payload and
/// all, when its owner ends. Walks survive any change: what is removed isn't visited any more, what
/// is added isn't visited yet. Always made by `std::make_shared`.
/// Owns: the payloads. Refers to: the owners.
/// Threads: every operation but `Walk`'s wants `lock` held;a removed payload is handed out, so that
/// it can end after the lock is released.
template <class Payload>
class WeakTable : public WeakTableBase {
public:
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

    [[nodiscard]] bool isEmpty() const noexcept { return live_ == 0; }
    [[nodiscard]] std::size_t size() const noexcept { return live_; }
    /// Moves with every insertion, replacement and removal by hand, not with an owner's end.
    [[nodiscard]] std::uint64_t mutations() const noexcept { return mutations_; }
    void noteMutation() noexcept { ++mutations_; }
    /// Moves whenever an entry came, or one may have moved or have left its place for good.
    [[nodiscard]] std::uint64_t places() const noexcept { return places_; }

    [[nodiscard]] Entry* find(const NSObject& owner) const noexcept {
        const ObjectState* state = ObjectState::find(owner);
        const bool mayHave = state && !state->entries.isUnused();
        return mayHave ? static_cast<Entry*>(entryOf(*state)) : nullptr;
    }

    /// Adds an owner that has no entry yet, at the end; a marked one is found again by `marked`.
    Entry& insert(const std::shared_ptr<NSObject>& owner, Payload payload, bool isMarked = false) {
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
        ++mutations_;
        unlink(entry);
        return takeOut(entry);
    }
    /// The same of an owner's entry, if it has one.
    [[nodiscard]] Payload remove(const NSObject& owner) {
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

    /// Keeps an entry's payload in place for the time of a call into it, even where the call
    /// removes the entry; for one entry after another. Made and ended with the lock held, as each
    /// call is begun and ended; the call itself may run without it. A call that isn't ended, since
    /// an exception passed, ends with this.
    class Call {
    public:
        explicit Call(WeakTable& table) noexcept : table_(table), next_(table.calls_) {
            if (next_) {
                next_->previous_ = this;
            }
            table.calls_ = this;
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call() {
            if (entry_) {
                end();
            }
            (previous_ ? previous_->next_ : table_.calls_) = next_;
            if (next_) {
                next_->previous_ = previous_;
            }
        }

        void begin(Entry& entry) noexcept { entry_ = &entry; }
        /// Ends the payload where the entry was removed and nobody else calls into it.
        void end() {
            Entry& entry = *std::exchange(entry_, nullptr);
            if (!entry.isLive()) [[unlikely]] {
                const Payload removed = takeRemoved(entry);
            }
        }
        /// The same, but hands the payload out.
        [[nodiscard]] Payload endAndTake() { return takeRemoved(*std::exchange(entry_, nullptr)); }

    private:
        friend class WeakTable;
        Payload takeRemoved(Entry& entry) {
            const bool isLast = !entry.isLive() && !table_.isCalled(entry);
            return isLast ? std::exchange(entry.payload, Payload()) : Payload();
        }

        WeakTable& table_;
        Entry* entry_ = nullptr;
        Call* next_;
        Call* previous_ = nullptr;
    };

    /// A walk over the entries there are now whose owners live, in order. Holds the lock. Nothing
    /// of it allocates.
    class Walk {
    public:
        explicit Walk(std::shared_ptr<WeakTable> table)
            : table_(std::move(table)), guard_(table_->lock), endChunk_(table_->chunks_.size()),
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
            return next([](const Entry&) { return true; });
        }
        /// The next entry that `wants` accepts; the owners of others aren't touched. `wants` may
        /// look at the entry and its state, and calls nothing that could change the table.
        template <class Wants>
        [[gnu::always_inline]] Entry* next(Wants wants) { // measured: a tenth of a switch
            owner_.reset();
            while (chunk_ < endChunk_) {
                auto& entries = table_->chunks_[chunk_];
                const std::size_t end = chunk_ + 1 == endChunk_ ? endIndex_ : entries.size();
                while (index_ < end) {
                    if (index_ + ahead < end) {
                        prefetch(entries[index_ + ahead]);
                    }
                    Entry& entry = entries[index_++];
                    if (entry.isLive() && wants(entry) && (owner_ = entry.owner.lock())) {
                        return &entry;
                    }
                }
                ++chunk_;
                index_ = 0;
            }
            return nullptr;
        }
        [[nodiscard]] const std::shared_ptr<NSObject>& owner() const noexcept { return owner_; }

        [[nodiscard]] const std::shared_ptr<WeakTable>& table() const noexcept { return table_; }

        /// Lets the present entry's owner go, which may end it.
        void release() noexcept { owner_.reset(); }
        /// Makes an entry that was come by otherwise the present one, if it and its owner live.
        bool visit(const Entry& entry) {
            owner_.reset();
            return entry.isLive() && (owner_ = entry.owner.lock());
        }
        /// Goes on behind the entries of lower order than that.
        void skipTo(std::uint32_t order) {
            const auto& chunks = table_->chunks_;
            while (chunk_ + 1 < endChunk_ && !chunks[chunk_ + 1].empty() &&
                   chunks[chunk_ + 1].front().order <= order) {
                ++chunk_;
                index_ = 0;
            }
            if (chunk_ < endChunk_ && !chunks[chunk_].empty()) {
                const std::uint32_t first = chunks[chunk_].front().order;
                index_ = std::max<std::size_t>(index_, order > first ? order - first : 0);
            }
        }

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
    static constexpr std::size_t ahead =
        8; ///< entries whose memory is asked for while one is called

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
