// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/Listener.h"
#include "domain/StyleFamilies.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <vector>

namespace zel::inline v1 {

/// What was removed from a table, to be destroyed with no private lock held.
struct RemovedListeners {
    std::list<Listener> listeners;
    ChangeHandlers handlers; ///< of a listener that a walk still holds
};

/// The listeners of one kind in one domain, in the order in which they were registered. A listener
/// is removed when its object ends, with everything its handlers captured.
/// Owns: the listeners. Refers to: their objects.
/// Threads: what adds and walks holds the styling lock; removing doesn't need it. The structure is
/// guarded by `linkLock`. While a walk is under way nothing moves: listeners that are removed stay
/// where they are, marked, until it ends, and new ones are appended.
class ListenerTable {
public:
    ListenerTable() = default;
    ListenerTable(const ListenerTable&) = delete;
    ListenerTable& operator=(const ListenerTable&) = delete;
    ~ListenerTable();

    /// Any thread.
    [[nodiscard]] std::size_t size() const noexcept {
        return size_.load(std::memory_order_relaxed);
    }

    /// An object's listener in this table, or nothing.
    [[nodiscard]] Listener* find(const StylingState& state) const noexcept ZEL_REQUIRES(linkLock) {
        Listener* each = state.listeners;
        while (each && each->table != this) {
            each = each->nextOfOwner;
        }
        return each;
    }
    /// Adds an object that has no listener here yet.
    Listener& insert(const std::shared_ptr<NSObject>& owner, StylingState& state,
                     Listener::Kind kind) ZEL_REQUIRES(linkLock);

    /// Removes an object's listener. Where a walk of another thread may be calling it, it is only
    /// marked, and the answer is true: a caller who must be sure that it no longer runs waits for
    /// that walk.
    [[nodiscard]] bool remove(const StylingState& state, RemovedListeners& removed)
        ZEL_REQUIRES(linkLock);
    /// Removes one listener of an object that ends, in whichever table; false where it has none.
    static bool endOneOf(StylingState& state) noexcept;

    /// Begins and ends a walk; the styling lock is held.
    void beginWalk() noexcept ZEL_REQUIRES(linkLock) { ++walks_; }
    void endWalk() noexcept;

    /// The listeners by place, nil where one was removed, for a walk that is under way.
    [[nodiscard]] const std::vector<Listener*>&
    places() const noexcept ZEL_NO_THREAD_SAFETY_ANALYSIS {
        return places_;
    }
    /// Those that have to be asked for their parents.
    [[nodiscard]] const std::set<Listener*>& asked() const noexcept ZEL_REQUIRES(linkLock) {
        return asked_;
    }

    /// The number of the next handler, by the styling lock: handlers that are added during a
    /// notification aren't called by it.
    std::uint64_t nextHandler = 1;
    /// The lists of walks, each walk's behind that of the walk that it interrupts: a bit for each
    /// place, so that they are in order without being sorted. By the styling lock. Kept, so that a
    /// delivery allocates nothing.
    std::vector<std::uint64_t> listed;
    /// The listeners by the families of their styles; see there.
    StyleFamilies families;

private:
    void unlink(Listener& listener) noexcept ZEL_REQUIRES(linkLock);
    void takeOut(Listener& listener, RemovedListeners& removed, bool mayRun) noexcept
        ZEL_REQUIRES(linkLock);
    void vacate(const Listener& listener) noexcept ZEL_REQUIRES(linkLock);
    void closeGaps() noexcept ZEL_REQUIRES(linkLock);

    std::list<Listener> listeners_ ZEL_GUARDED_BY(linkLock);
    std::list<Listener> removed_ ZEL_GUARDED_BY(linkLock); ///< the marked ones
    std::vector<Listener*> places_ ZEL_GUARDED_BY(linkLock);
    std::set<Listener*> asked_ ZEL_GUARDED_BY(linkLock);
    unsigned walks_ ZEL_GUARDED_BY(linkLock) = 0;
    std::atomic<std::size_t> size_{0};
};

} // namespace zel::inline v1
