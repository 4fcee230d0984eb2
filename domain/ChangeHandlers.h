// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/objects/WeakTable.h"

#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <utility>

namespace zel {
inline namespace v1 {

/// One owner's change handlers, in registration order. Most owners have one; the others' are kept
/// aside, where adding moves none, since one may be running.
class ChangeHandlers {
public:
    /// Adds a handler and answers where it stays for as long as it is kept.
    const ZelStyleChangeHandler& append(ZelStyleChangeHandler handler, std::uint64_t serial) {
        if (!first_) {
            first_ = std::move(handler);
            return first_;
        }
        if (!later_) {
            later_ = std::make_unique<std::deque<Later>>();
        }
        return later_->emplace_back(std::move(handler), serial).handler;
    }

    /// Calls `visit` for each handler there was before `bound`, while `visit` answers true.
    template <class Visit>
    void forEachBefore(std::uint64_t bound, Visit visit) const {
        if (!first_ || !visit(first_) || !later_) {
            return;
        }
        for (std::size_t i = 0; i < later_->size() && (*later_)[i].serial < bound; ++i) {
            if (!visit((*later_)[i].handler)) {
                return; // the handlers may be gone
            }
        }
    }

private:
    struct Later {
        Later(ZelStyleChangeHandler added, std::uint64_t number)
            : handler(std::move(added)), serial(number) {}
        ZelStyleChangeHandler handler;
        std::uint64_t serial;
    };

    ZelStyleChangeHandler first_;
    std::unique_ptr<std::deque<Later>> later_;
};

/// Owner to its change handlers, in the order in which owners came.
using ChangeHandlerTable = WeakTable<ChangeHandlers>;

/// The handlers of one owner that a delivery is for: those that a walk found, or the one that was
/// just registered.
class ChangeHandlersToCall {
public:
    using Entry = ChangeHandlerTable::Entry;

    /// All of an owner's that there were before `bound`; ends early where the entry is removed.
    ChangeHandlersToCall(const Entry& entry, std::uint64_t bound) noexcept
        : entry_(entry), state_(*entry.state), bound_(bound) {}
    ChangeHandlersToCall(const Entry& entry, const ZelStyleChangeHandler& only) noexcept
        : entry_(entry), state_(*entry.state), only_(&only) {}

    template <class Visit>
    void forEach(Visit visit) const {
        if (only_) {
            visit(*only_);
            return;
        }
        entry_.payload.forEachBefore(bound_, [&](const ZelStyleChangeHandler& handler) {
            visit(handler);
            return entry_.isLive();
        });
    }

    /// The owner's state; it lasts as long as the owner, which whoever calls the handlers holds.
    [[nodiscard]] ObjectState& ownerState() const noexcept { return state_; }

private:
    const Entry& entry_;
    ObjectState& state_;
    const ZelStyleChangeHandler* only_ = nullptr;
    std::uint64_t bound_ = 0;
};

/// The set of change handler objects, in the order in which they came.
struct NoPayload {};
using ChangeHandlerObjects = WeakTable<NoPayload>;

} // namespace v1
} // namespace zel
