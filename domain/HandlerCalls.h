// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenerTable.h"
#include "domain/StyleFamilies.h"

#include <cstdint>
#include <utility>

namespace zel {
inline namespace v1 {

/// Calls of one listener. Keeps its handlers where they are even where a call removes the listener;
/// the last of those within each other destroys what was removed.
/// Threads: the styling lock is held, and the listener's owner.
class HandlerCalls {
public:
    explicit HandlerCalls(Listener& listener) noexcept
        : listener_(listener), state_(*listener.state) {
        ++listener_.running;
    }
    HandlerCalls(const HandlerCalls&) = delete;
    HandlerCalls& operator=(const HandlerCalls&) = delete;
    ~HandlerCalls() {
        if (isCalling_) [[unlikely]] { // a handler raised: the style isn't noted
            bindingChanges.increment();
        }
        if (--listener_.running == 0 && !listener_.isLive()) [[unlikely]] {
            const ChangeHandlers removed = std::move(listener_.handlers);
        }
    }

    /// Makes a call, then notes the style of that serial as delivered. Where something has changed
    /// meanwhile the style may be outdated, and what other deliveries have noted of this listener
    /// wrong.
    template <class Call>
    void make(std::uint64_t serial, Call call) {
        requireNoPrivateLock();
        isCalling_ = true;
        call();
        isCalling_ = false;
        auto& last = state_.lastZelStyle;
        if (begun_ != StylingMoment::now() ||
            (state_.hasListenedElsewhere && last.load(std::memory_order_relaxed) != serial))
            [[unlikely]] {
            bindingChanges.increment();
        }
        last.store(serial, std::memory_order_relaxed);
    }

private:
    Listener& listener_;
    StylingState& state_;
    const StylingMoment begun_ = StylingMoment::now();
    bool isCalling_ = false;
};

} // namespace v1
} // namespace zel
