// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenerTable.h"

#include <cstdint>
#include <utility>

namespace zel::inline v1 {

/// Calls of one listener. Keeps its handlers where they are even where a call removes the listener;
/// the last of those within each other destroys what was removed.
/// Threads: the styling lock is held, and the listener's owner.
class HandlerCalls {
public:
    explicit HandlerCalls(Listener& listener) noexcept : listener_(listener) {
        ++listener_.running;
    }
    HandlerCalls(const HandlerCalls&) = delete;
    HandlerCalls& operator=(const HandlerCalls&) = delete;
    [[gnu::always_inline]] ~HandlerCalls() {
        if (--listener_.running == 0 && !listener_.isLive()) [[unlikely]] {
            listener_.endHandlers();
        }
    }

    /// Makes a call, then notes the style of that serial as delivered. Where that may belie what a
    /// walk has noted of all listeners, meanwhile or in another domain, the note is invalidated.
    template <class Call>
    void make(std::uint64_t serial, Call call) {
        requireNoPrivateLock();
        const std::uint64_t notes = StyleFamilies::notes;
        call();
        auto& state = *listener_.state;
        auto& last = state.lastZelStyle;
        if (notes != StyleFamilies::notes ||
            (state.hasListenedElsewhere && last.load(std::memory_order_relaxed) != serial))
            [[unlikely]] {
            bindingChanges.increment();
        }
        last.store(serial, std::memory_order_relaxed);
    }

private:
    Listener& listener_;
};

} // namespace zel::inline v1
