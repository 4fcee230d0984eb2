// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/objects/WeakTable.h"

#include <utility>

namespace zel {
inline namespace v1 {

/// Keeps an entry's payload in place for the time of a call into it, even where the call removes
/// the entry; for one entry after another. Made and ended with the lock held, as each call is begun
/// and ended; the call itself may run without it. A call that isn't ended, since an exception
/// passed, ends with this.
template <class Payload, LockRank Rank>
class WeakTable<Payload, Rank>::Call {
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

} // namespace v1
} // namespace zel
