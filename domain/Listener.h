// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/StyleFamilies.h"
#include "styleable/StylingState.h"

#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <utility>

namespace zel::inline v1 {

class ListenerTable;

/// One owner's change handlers, in the order of registration. Most owners have one; adding later
/// ones moves none of them: one may be running.
struct ChangeHandlers {
    struct Later {
        ZelStyleChangeHandler handler;
        std::uint64_t number; ///< see `ListenerTable::nextHandler`
    };
    ZelStyleChangeHandler first;
    std::list<Later> later;
};

/// One listener of a domain: an owner with its change handlers, or a change handler object. Keeps
/// its address until it is removed; where a walk is under way then, until that ends.
struct Listener {
    /// How the style that applies to its object is found.
    enum class Kind : std::uint8_t {
        Plain, ///< not styleable: it has the main style
        Known, ///< by its node in a tree whose links the library knows
        Asked, ///< by asking it, and each object above it, for its parent
    };

    /// False once it was removed. Any thread.
    [[nodiscard]] bool isLive() const noexcept { return live.load(std::memory_order_acquire); }

    std::weak_ptr<NSObject> owner; ///< fixed
    const NSObject* object;        ///< the owner's address, to be prefetched; fixed
    StylingState* state;           ///< the owner's, for as long as that lives; fixed
    Kind kind;                     ///< fixed
    std::atomic<bool> live{true};
    unsigned running = 0;               ///< calls of its handlers under way; by the styling lock
    ChangeHandlers handlers;            ///< added under both locks; none of a handler object
    ListenerTable* table;               ///< fixed
    std::size_t place = 0;              ///< in the table; by linkLock
    Listener* nextOfOwner = nullptr;    ///< by linkLock
    std::list<Listener>::iterator self; ///< in the list that owns it; by linkLock
};

/// Calls of one listener. Keeps its handlers in place while calls run: the outermost call destroys
/// those of a listener that was removed.
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
            const ChangeHandlers ended = std::move(listener_.handlers);
        }
    }

    /// Makes a call, then notes the style of that serial as delivered. Increments `bindingChanges`
    /// where this may make families wrong: those built during the call, or those of another table
    /// in which the object listens.
    template <class Call>
    void make(std::uint64_t serial, Call call) {
        requireNoPrivateLock();
        const std::uint64_t families = StyleFamilies::completions;
        call();
        auto& state = *listener_.state;
        auto& last = state.lastZelStyle;
        if (families != StyleFamilies::completions ||
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
