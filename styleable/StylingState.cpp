// SPDX-License-Identifier: Apache-2.0
#include "platform/objects/ObjectState.h"
#include "platform/objects/StylingChanges.h"
#include "platform/views/StyleableTree.h"

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleable.h>

namespace zel {
inline namespace v1 {
namespace {

using AttachedIdentifier = AtomicIdentifier ObjectState::*;

std::optional<std::string> readIdentifier(const NSObject& object, AttachedIdentifier attached) {
    const ObjectState* state = ObjectState::find(object);
    return state ? (state->*attached).copy() : std::nullopt;
}

// The new value isn't compared with the old one: redundant deliveries are filtered where they
// happen.
void setIdentifier(NSObject& object, AttachedIdentifier attached,
                   std::optional<std::string_view> identifier) {
    if (identifier || ObjectState::find(object)) {
        (ObjectState::of(object).*attached).store(identifier);
        StylingChanges::note();
    }
    const ZelStyleable* conforming = object.asZelStyleable();
    if (conforming) {
        if (const ZelStyleableNode* node = conforming->zelStyleableNode()) {
            const std::scoped_lock guard(ZelStyleableTree::lock());
            ZelStyleableTree::forgetBindings(*node);
        }
        if (const auto target = object.weak_from_this().lock()) { // else it ends: nobody is told
            ZelStyleDomain::domainForIdentifier(conforming->domainIdentifierOfZelStyleable())
                ->notifyForStyleChangeOf(target, {.withEvent = ZelStyleChangeEventChanged});
        }
    }
}

} // namespace

ZelStyleToken NSObject::lastZelStyle() const noexcept {
    const ObjectState* state = ObjectState::find(*this);
    return state ? ZelStyleToken(state->lastZelStyle.load(std::memory_order_relaxed))
                 : ZelStyleToken();
}

void NSObject::setLastZelStyle(ZelStyleToken style) {
    if (!style.isNil() || ObjectState::find(*this)) {
        ObjectState::of(*this).lastZelStyle.store(style.serial(), std::memory_order_relaxed);
        StylingChanges::note();
    }
}

std::optional<std::string> NSObject::customZelStyleIdentifier() const {
    return readIdentifier(*this, &ObjectState::customZelStyleIdentifier);
}

void NSObject::setCustomZelStyleIdentifier(std::optional<std::string_view> identifier) {
    setIdentifier(*this, &ObjectState::customZelStyleIdentifier, identifier);
}

std::optional<std::string> NSObject::customZelStyleSchemeIdentifier() const {
    return readIdentifier(*this, &ObjectState::customZelStyleSchemeIdentifier);
}

void NSObject::setCustomZelStyleSchemeIdentifier(std::optional<std::string_view> identifier) {
    setIdentifier(*this, &ObjectState::customZelStyleSchemeIdentifier, identifier);
}

bool NSObject::registerStyleableChangeHandler(ZelStyleChangeHandler handler) {
    const auto self = shared_from_this();
    const auto domain = ZelStyleDomain::domainForStyleable(self);
    if (domain && !handler) {
        throw ZelInvalidArgument("a change handler must not be nil");
    }
    if (domain) {
        domain->_registerChangeHandler(std::move(handler), self);
    }
    return domain != nullptr;
}

// Asks for no reference to itself, which an object has none of in its destructor.
bool NSObject::unregisterStyleableChangeHandlers() {
    const ZelStyleable* conforming = asZelStyleable();
    if (conforming) {
        ZelStyleDomain::domainForIdentifier(conforming->domainIdentifierOfZelStyleable())
            ->_unregisterChangeHandlersWithOwner(*this);
    }
    return conforming != nullptr;
}

} // namespace v1
} // namespace zel
