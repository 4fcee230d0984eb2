// SPDX-License-Identifier: Apache-2.0
#include "styleable/StylingState.h"

#include "domain/DomainInternals.h"
#include "styleable/StyleableTree.h"

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <stdexcept>

namespace zel::inline v1 {
namespace {

using CarriedIdentifier = Identifier StylingState::*;

std::optional<std::string> readIdentifier(const NSObject& object, CarriedIdentifier carried) {
    const auto* state = Attachment::find<StylingState>(object);
    if (state == nullptr) {
        return std::nullopt;
    }
    const PrivateGuard guard(linkLock);
    return textOf(state->*carried);
}

// The new value isn't compared with the old one: redundant deliveries are filtered where they
// happen.
void setIdentifier(NSObject& object, CarriedIdentifier carried,
                   std::optional<std::string_view> identifier) {
    if (identifier || Attachment::find<StylingState>(object)) {
        Identifier stored = makeIdentifier(identifier);
        auto& state = Attachment::of<StylingState>(object);
        const ZelStyleableNode* const node = StyleableTree::nodeOf(object);
        const PrivateGuard guard(linkLock);
        (state.*carried).swap(stored);
        if (node) {
            StyleableTree::invalidate(*node);
        }
    }
    const auto target = object.weak_from_this().lock(); // nil where it ends: nobody is notified
    if (const auto domain = ZelStyleDomain::domainForStyleable(target)) {
        domain->notifyForStyleChangeOf(target, {.withEvent = ZelStyleChangeEventChanged});
    }
}

} // namespace

StylingState::~StylingState() {
    while (ListenerTable::endOneOf(*this)) {
    }
}

void NSObject::styleChangedWithEvent(const std::shared_ptr<ZelStyle>& /*style*/,
                                     ZelStyleChangeEvent /*event*/) {
    throw std::logic_error("this object does not answer style:changedWithEvent:");
}

ZelStyleToken NSObject::lastZelStyle() const noexcept {
    const auto* state = Attachment::find<StylingState>(*this);
    return state ? ZelStyleToken(state->lastZelStyle.load(std::memory_order_relaxed))
                 : ZelStyleToken();
}

void NSObject::setLastZelStyle(ZelStyleToken style) {
    if (!style.isNil() || Attachment::find<StylingState>(*this)) {
        Attachment::of<StylingState>(*this).lastZelStyle.store(style.serial(),
                                                               std::memory_order_relaxed);
        bindingChanges.increment();
    }
}

std::optional<std::string> NSObject::customZelStyleIdentifier() const {
    return readIdentifier(*this, &StylingState::styleIdentifier);
}

void NSObject::setCustomZelStyleIdentifier(std::optional<std::string_view> identifier) {
    setIdentifier(*this, &StylingState::styleIdentifier, identifier);
}

std::optional<std::string> NSObject::customZelStyleSchemeIdentifier() const {
    return readIdentifier(*this, &StylingState::schemeIdentifier);
}

void NSObject::setCustomZelStyleSchemeIdentifier(std::optional<std::string_view> identifier) {
    setIdentifier(*this, &StylingState::schemeIdentifier, identifier);
}

bool NSObject::registerStyleableChangeHandler(ZelStyleChangeHandler handler) {
    const auto self = shared_from_this();
    const auto domain = ZelStyleDomain::domainForStyleable(self);
    if (domain) {
        domain->registerChangeHandler(std::move(handler), self);
    }
    return domain != nullptr;
}

// Asks for no reference to itself, which an object has none of in its destructor.
bool NSObject::unregisterStyleableChangeHandlers() {
    const ZelStyleable* conforming = asZelStyleable();
    if (conforming) {
        const auto domain =
            ZelStyleDomain::domainForIdentifier(conforming->domainIdentifierOfZelStyleable());
        DomainInternals::unregister(DomainInternals::state(*domain).owners, *this);
    }
    return conforming != nullptr;
}

} // namespace zel::inline v1
