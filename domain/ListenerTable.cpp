// SPDX-License-Identifier: Apache-2.0
#include "domain/ListenerTable.h"

#include "style/StylingLock.h"

#include <utility>

namespace zel::inline v1 {

// Objects that end at the same time find their listeners gone.
ListenerTable::~ListenerTable() {
    const PrivateGuard guard(linkLock);
    for (Listener& each : listeners_) {
        unlink(each);
    }
}

Listener& ListenerTable::insert(const std::shared_ptr<NSObject>& owner, StylingState& state,
                                Listener::Kind kind) {
    if (walks_ == 0 && places_.size() > 2 * size() + 16) {
        closeGaps();
    }
    if (places_.size() == places_.capacity()) {
        places_.reserve(2 * places_.size() + 8);
    }
    std::list<Listener> made(1);
    Listener& added = made.front();
    added.self = made.begin();
    added.owner = owner;
    added.object = owner.get();
    added.state = &state;
    added.table = this;
    added.kind = kind;
    if (kind == Listener::Kind::Asked) {
        asked_.insert(&added);
    }
    added.place = places_.size();
    places_.push_back(&added);
    listeners_.splice(listeners_.end(), made);
    state.hasListenedElsewhere = state.hasListenedElsewhere || state.listeners;
    added.nextOfOwner = state.listeners;
    state.listeners = &added;
    families.invalidate();
    size_.fetch_add(1, std::memory_order_relaxed);
    return added;
}

bool ListenerTable::remove(const StylingState& state, RemovedListeners& removed) {
    Listener* const listener = find(state);
    if (listener == nullptr) {
        return false;
    }
    const bool mayRun = walks_ > 0 && !StylingLock::isHeld();
    takeOut(*listener, removed, mayRun);
    return mayRun;
}

// An object that ends isn't held by any walk, so that none of its handlers runs.
bool ListenerTable::endOneOf(StylingState& state) noexcept {
    RemovedListeners removed;
    const PrivateGuard guard(linkLock);
    if (state.listeners == nullptr) {
        return false;
    }
    state.listeners->table->takeOut(*state.listeners, removed, false);
    return true;
}

void ListenerTable::endWalk() noexcept {
    std::list<Listener> removed; // ends after the guard
    const PrivateGuard guard(linkLock);
    if (--walks_ == 0) {
        for (const Listener& each : removed_) {
            vacate(each);
        }
        removed.swap(removed_);
    }
}

void ListenerTable::unlink(Listener& listener) noexcept {
    Listener** link = &listener.state->listeners;
    while (*link != &listener) {
        link = &(*link)->nextOfOwner;
    }
    *link = listener.nextOfOwner;
    listener.live.store(false, std::memory_order_release);
}

void ListenerTable::takeOut(Listener& listener, RemovedListeners& removed, bool mayRun) noexcept {
    unlink(listener);
    if (listener.kind == Listener::Kind::Asked) {
        asked_.erase(&listener);
    }
    families.invalidate();
    size_.fetch_sub(1, std::memory_order_relaxed);
    auto& list = walks_ > 0 ? removed_ : removed.listeners;
    list.splice(list.end(), listeners_, listener.self);
    if (walks_ == 0) {
        vacate(listener);
    } else if (!mayRun && listener.running == 0) {
        removed.handlers = std::move(listener.handlers);
    }
}

// The last place leaves no gap, so that listeners that come and go cost the others nothing.
void ListenerTable::vacate(const Listener& listener) noexcept {
    places_[listener.place] = nullptr;
    while (!places_.empty() && places_.back() == nullptr) {
        places_.pop_back();
    }
}

void ListenerTable::closeGaps() noexcept {
    std::erase(places_, nullptr);
    for (std::size_t place = 0; place < places_.size(); ++place) {
        places_[place]->place = place;
    }
}

} // namespace zel::inline v1
