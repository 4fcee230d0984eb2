// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainState.h"
#include "platform/locks/DeliveryGate.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <optional>
#include <utility>

namespace zel {
inline namespace v1 {
namespace {

/// The call that a registration makes: outside the table's lock, its handler kept in place, even
/// where another thread unregisters it meanwhile.
class RegistrationCall {
public:
    RegistrationCall(ChangeHandlerTable& table, ChangeHandlerTable::Entry& entry,
                     RecursiveGuard& guard)
        : guard_(guard) {
        call_.emplace(table).begin(entry);
        guard_.unlock();
    }
    RegistrationCall(const RegistrationCall&) = delete;
    RegistrationCall& operator=(const RegistrationCall&) = delete;
    ~RegistrationCall() {
        guard_.lock();
        const ChangeHandlers removed = call_->endAndTake();
        call_.reset();
        guard_.unlock();
    } // what the handler held ends outside the lock

private:
    RecursiveGuard& guard_;
    std::optional<ChangeHandlerTable::Call> call_;
};

/// Whether a target's notification has to ask the owner for its parents.
bool hasUnknownParents(const NSObject& owner) {
    const ZelStyleable* styleable = owner.asZelStyleable();
    return styleable && !styleable->zelStyleableNode();
}

} // namespace

void ZelStyleDomain::registerChangeHandler(ZelStyleChangeHandler handler,
                                           const std::shared_ptr<NSObject>& withOwner) {
    if (!withOwner) {
        return;
    }
    if (!handler) {
        throw ZelInvalidArgument("a change handler must not be nil");
    }
    // A handler may take the domain off the registry, and clear the caller's reference to the
    // owner.
    const auto self = weak_from_this().lock();
    const std::shared_ptr<NSObject> owner = withOwner;
    _registerChangeHandler(std::move(handler), owner);
}

void ZelStyleDomain::_registerChangeHandler(ZelStyleChangeHandler&& handler,
                                            const std::shared_ptr<NSObject>& owner) {
    const DeliveryGate gate; // else a switch elsewhere may tell the owner first, and be outdone
    ChangeHandlerTable& table = *state_->changeHandlersByOwner;
    RecursiveGuard guard(table.lock);
    auto* found = table.find(*owner);
    auto& entry = found ? *found : table.insert(owner, {}, hasUnknownParents(*owner));
    const auto& kept = entry.payload.append(std::move(handler), state_->handlerSerial++);
    const ChangeHandlersToCall added(entry, kept);
    const RegistrationCall call(table, entry, guard);
    _applyStyle(_notifyStyleFor(owner), added, owner,
                {.withEvent = ZelStyleChangeEventInitial, .force = true});
}

void ZelStyleDomain::unregisterChangeHandlersWithOwner(const std::shared_ptr<NSObject>& owner) {
    if (owner) {
        _unregisterChangeHandlersWithOwner(*owner);
    }
}

void ZelStyleDomain::_unregisterChangeHandlersWithOwner(const NSObject& owner) {
    ChangeHandlers removed; // end after the lock is released
    ChangeHandlerTable& table = *state_->changeHandlersByOwner;
    const RecursiveGuard guard(table.lock);
    removed = table.remove(owner);
}

void ZelStyleDomain::registerChangeHandler(const std::shared_ptr<NSObject>& object) {
    if (!object) {
        return;
    }
    const std::shared_ptr<NSObject> kept = object; // its call may clear the caller's reference
    const DeliveryGate gate;                       // as above
    {
        ChangeHandlerObjects& table = *state_->changeHandlers;
        const RecursiveGuard guard(table.lock);
        if (!table.find(*kept)) {
            table.insert(kept, {}, hasUnknownParents(*kept));
        }
    }
    _applyStyle(_notifyStyleFor(kept), kept,
                {.withEvent = ZelStyleChangeEventInitial, .force = true});
}

void ZelStyleDomain::unregisterChangeHandler(const std::shared_ptr<NSObject>& object) {
    if (!object) {
        return;
    }
    ChangeHandlerObjects& table = *state_->changeHandlers;
    const RecursiveGuard guard(table.lock);
    (void)table.remove(*object);
}

} // namespace v1
} // namespace zel
