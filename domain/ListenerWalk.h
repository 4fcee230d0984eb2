// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenerTable.h"
#include "domain/StyleResolution.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace zel::inline v1 {

/// A walk over the listeners of a table that a notification is for, in the order of registration:
/// all of them, those at and below a target, or those of a family of styles. Those below a target
/// are collected by walking down its tree, those of a family by the table's index; listeners that
/// have to be asked for their parents are visited in any case. Where a handler changes a
/// link, an identifier or a scheme, the list may be wrong: the walk then visits every remaining
/// listener. A listener
/// that is added during the walk isn't visited by it.
/// Threads: made, used and destroyed behind the styling lock.
class ListenerWalk {
public:
    ListenerWalk(ListenerTable& table, FoundStyles& styles, const std::shared_ptr<NSObject>& target,
                 const ZelStyle* family);
    ListenerWalk(const ListenerWalk&) = delete;
    ListenerWalk& operator=(const ListenerWalk&) = delete;
    ~ListenerWalk() { table_.endWalk(); }

    /// The next listener that was not removed, or nothing at the end.
    [[gnu::always_inline]] Listener* next() {
        const auto& places = table_.places();
        while (goToNext(places)) {
            Listener* const listener = places[place_++]; // a handler may have added some
            if (listener && listener->isLive()) [[likely]] {
                return listener;
            }
        }
        return nullptr;
    }

    /// The style for a listener, whose owner is held; nothing where the notification isn't for it.
    /// May ask the owner for its parents; nothing as well where the host removes the listener then.
    const FoundStyles::Found* styleOf(const Listener& listener, const NSObject& owner) {
        if (listener.kind == Listener::Kind::Known && !testsEach_) [[likely]] {
            const ZelStyleableNode& node = *listener.state->node;
            auto binding = StyleableTree::rememberedOf(node);
            if (binding.epoch != bindingChanges.now()) [[unlikely]] {
                binding = bindAhead(node);
            }
            return &styles_.of(node, binding);
        }
        return resolve(listener, owner);
    }

    /// Whether it began without a list, and so visits all listeners.
    [[nodiscard]] bool visitsAll() const noexcept { return visitsAll_; }
    /// Whether it has visited all listeners and nothing has changed meanwhile.
    [[nodiscard]] bool hasVisitedAll() const noexcept {
        return visitsAll_ && begun_ == StylingMoment::now();
    }

private:
    static constexpr std::size_t wordBits = 64;

    void listTarget(const ZelStyleableNode* node) ZEL_REQUIRES(linkLock);
    /// Goes to the next place that is visited; false where there is none.
    bool goToNext(const std::vector<Listener*>& places) {
        if (isListed_) [[unlikely]] {
            if (begun_ == StylingMoment::now()) [[likely]] {
                goToListed();
                return place_ < end_;
            }
            leaveList();
        }
        prefetchAhead(places);
        return place_ < end_;
    }
    void begin(const ZelStyleableNode* node, const ZelStyle* family) ZEL_REQUIRES(linkLock);
    void beginListing() ZEL_REQUIRES(linkLock);
    void list(const Listener& listener) noexcept {
        const std::size_t place = listener.place;
        place_ = std::min(place_, place);
        lastListed_ = std::max(lastListed_, place);
        list_.bits[list_.begin + place / wordBits] |= std::uint64_t{1} << place % wordBits;
    }
    /// Goes to the first listed place from the present one on, else to the end.
    void goToListed() noexcept {
        std::size_t word = place_ / wordBits;
        std::uint64_t bits = list_.bits[list_.begin + word] >> place_ % wordBits;
        while (bits == 0) {
            if (++word > lastListed_ / wordBits) {
                place_ = end_;
                return;
            }
            place_ = word * wordBits;
            bits = list_.bits[list_.begin + word];
        }
        place_ += static_cast<std::size_t>(std::countr_zero(bits));
    }
    void leaveList() noexcept;
    StyleableTree::Binding bindAhead(const ZelStyleableNode& node);
    [[gnu::always_inline]] void prefetchAhead(const std::vector<Listener*>& places) const noexcept;
    const FoundStyles::Found* resolve(const Listener& listener, const NSObject& owner);

    ListenerTable& table_;
    FoundStyles& styles_;
    const NSObject* const target_;
    const StylingMoment begun_ = StylingMoment::now();
    std::size_t place_ = 0; ///< of the next listener, unless it is listed
    std::size_t end_ = 0;   ///< the first place that isn't visited
    /// This walk's part of the table's bits: one for each place, set where a listener is listed. So
    /// they come in order without being sorted.
    struct List {
        ~List() { bits.resize(begin); }
        std::vector<std::uint64_t>& bits;
        const std::size_t begin = bits.size();
    };
    const List list_;
    std::size_t lastListed_ = 0;
    bool isListed_ = false;  ///< whether it goes by the list, or by all listeners
    bool visitsAll_ = false; ///< whether it does the latter from its beginning
    bool testsEach_ = false; ///< after the list was left: each is tested for the target
};

/// Asks for memory that is needed soon: the listener 16 places ahead, and 8 places ahead its
/// object, with the reference counts just before it, and its state. Without it a switch of 100,000
/// listeners takes 3.9 times as long. Always inline: GCC drops the call of a function that only
/// prefetches.
inline void ListenerWalk::prefetchAhead(const std::vector<Listener*>& places) const noexcept {
    constexpr std::size_t far = 16;
    constexpr std::size_t near = 8;
    constexpr std::size_t line = 64;
    if (place_ + far < end_) {
        if (const Listener* const farther = places[place_ + far]) {
            __builtin_prefetch(farther);
            __builtin_prefetch(reinterpret_cast<const char*>(farther) + line);
        }
        if (const Listener* const nearer = places[place_ + near]) {
            __builtin_prefetch(reinterpret_cast<const char*>(nearer->object) - 16, 1);
            __builtin_prefetch(nearer->state, 1);
        }
    }
}

} // namespace zel::inline v1
