// SPDX-License-Identifier: Apache-2.0
#include "domain/ListenerTable.h"

#include "style/StylingLock.h"

#include <ZelStyleKit/ZelStyleable.h>

#include <utility>

namespace zel::inline v1 {

// Objects that end at the same time find their listeners gone.
ListenerTable::~ListenerTable() {
    RemovedListeners removed;
    const PrivateGuard guard(linkLock);
    for (Listener* each : places_) {
        if (each) {
            if (each->isLive()) {
                unlink(*each);
            }
            removed.add(*each);
        }
    }
} // the guard goes first, then the listeners

Listener& ListenerTable::insert(const std::shared_ptr<NSObject>& owner, StylingState& state,
                                const ZelStyleable* styleable) {
    closeGaps();
    if (places_.size() == places_.capacity()) {
        places_.reserve(2 * places_.size() + 8);
    }
    auto made = std::make_unique<Listener>();
    made->owner = owner;
    made->object = owner.get();
    made->state = &state;
    made->table = this;
    made->kind = state.node ? Listener::Kind::Known
                            : (styleable ? Listener::Kind::Asked : Listener::Kind::Plain);
    if (made->kind == Listener::Kind::Asked) {
        asked_.insert(made.get());
    }
    Listener& added = *made.release();
    added.place = places_.size();
    places_.push_back(&added);
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
    RemovedListeners removed;
    const PrivateGuard guard(linkLock);
    if (--walks_ > 0) {
        return;
    }
    while (Listener* const each = removed_) {
        removed_ = each->nextOfOwner;
        vacate(*each);
        removed.add(*each);
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
    if (walks_ == 0) {
        vacate(listener);
        removed.add(listener);
        return;
    }
    listener.nextOfOwner = removed_;
    removed_ = &listener;
    if (!mayRun && listener.running == 0) {
        removed.handlers = std::move(listener.handlers);
    }
}

// The last place leaves no gap, so that listeners that come and go cost the others nothing.
void ListenerTable::vacate(const Listener& listener) noexcept {
    places_[listener.place] = nullptr;
    ++gaps_;
    while (!places_.empty() && places_.back() == nullptr) {
        places_.pop_back();
        --gaps_;
    }
}

void ListenerTable::closeGaps() noexcept {
    if (walks_ > 0 || gaps_ <= places_.size() / 2 + 8) {
        return;
    }
    std::size_t place = 0;
    for (Listener* each : places_) {
        if (each) {
            each->place = place;
            places_[place++] = each;
        }
    }
    places_.resize(place);
    gaps_ = 0;
}

} // namespace zel::inline v1
