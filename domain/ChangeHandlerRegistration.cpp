// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainInternals.h"
#include "style/StylingLock.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <utility>

namespace zel::inline v1 {
namespace {

/// Adds an object to a table, or another handler of it, and begins a walk, so that they stay where
/// they are. Answers the handler that was added; nil for a handler object.
Listener& add(ListenerTable& table, const std::shared_ptr<NSObject>& owner,
              ZelStyleChangeHandler&& handler, const ZelStyleChangeHandler*& added) {
    auto& state = Attachment::of<StylingState>(*owner);
    const auto ofOthers = owner->asZelStyleable() ? Listener::Kind::Asked : Listener::Kind::Plain;
    const ZelStyleableNode* const node = StyleableTree::nodeOf(*owner);
    const auto kind = node ? Listener::Kind::Known : ofOthers;
    const PrivateGuard guard(linkLock);
    state.node = node;
    Listener* const present = table.find(state);
    Listener& listener = present ? *present : table.insert(owner, state, kind);
    auto& [first, later] = listener.handlers;
    if (handler && first) {
        auto& [place, number] = later.emplace_back(); // without memory the handler isn't moved
        place = std::move(handler);
        number = table.nextHandler++;
        added = &place;
    } else if (handler) {
        first = std::move(handler);
        added = &first;
    }
    table.beginWalk();
    return listener;
}

/// Adds an object, or another handler of it, to a table, and makes the first call. That holds the
/// styling lock: else it could overwrite, with the older style found here, what a switch on another
/// thread has delivered.
void registerListener(ZelStyleDomain& domain, ListenerTable& table, ZelStyleChangeHandler&& handler,
                      const std::shared_ptr<NSObject>& withOwner) {
    // A handler may take the domain off the registry, and clear the caller's reference.
    const auto held = domain.weak_from_this().lock();
    const std::shared_ptr<NSObject> owner = withOwner;
    const StylingLock lock;
    const ZelStyleChangeHandler* added = nullptr;
    Listener& listener = add(table, owner, std::move(handler), added);
    const struct Walk {
        ~Walk() { table.endWalk(); }
        ListenerTable& table;
    } walk{table};
    HandlerCalls calls(listener); // before the owner is asked, which may unregister it
    const auto style = DomainInternals::_notifyStyleFor(domain, owner);
    calls.make(ZelStyleToken(style).serial(), [&] {
        if (added) {
            (*added)(owner, style, ZelStyleChangeEventInitial);
        } else {
            owner->styleChangedWithEvent(style, ZelStyleChangeEventInitial);
        }
    });
}

} // namespace

void DomainInternals::unregister(ListenerTable& table, const NSObject& object) {
    const auto* state = Attachment::find<StylingState>(object);
    if (state == nullptr) {
        return;
    }
    bool mayRun = false;
    {
        RemovedListeners removed;
        const PrivateGuard guard(linkLock);
        mayRun = table.remove(*state, removed);
    }
    if (mayRun && !object.weak_from_this().expired()) {
        const StylingLock untilTheWalkIsOver;
    }
}

void ZelStyleDomain::registerChangeHandler(ZelStyleChangeHandler handler,
                                           const std::shared_ptr<NSObject>& withOwner) {
    if (!withOwner) {
        return;
    }
    if (!handler) {
        throw ZelInvalidArgument("a change handler must not be nil");
    }
    registerListener(*this, state_->owners, std::move(handler), withOwner);
}

void ZelStyleDomain::registerChangeHandler(const std::shared_ptr<NSObject>& object) {
    if (object) {
        registerListener(*this, state_->objects, nullptr, object);
    }
}

void ZelStyleDomain::unregisterChangeHandlersWithOwner(const std::shared_ptr<NSObject>& owner) {
    if (owner) {
        DomainInternals::unregister(state_->owners, *owner);
    }
}

void ZelStyleDomain::unregisterChangeHandler(const std::shared_ptr<NSObject>& object) {
    if (object) {
        DomainInternals::unregister(state_->objects, *object);
    }
}

} // namespace zel::inline v1
