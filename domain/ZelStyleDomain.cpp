// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainState.h"
#include "domain/SystemAppearance.h"
#include "style/StyleLookupEpoch.h"

#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>

namespace zel {
inline namespace v1 {

std::string_view ZelStyleDomainIdentifierDefault = "default";
std::string_view ZelStyleIdentifierMain = "main";

ZelStyleDomain::ZelStyleDomain() : state_(std::make_unique<State>()) {}

// An exception of a handler that is called now has nowhere to go.
ZelStyleDomain::~ZelStyleDomain() {
    try {
        setSchemeFollowsSystem(false);
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
}

std::shared_ptr<NSObject> ZelStyleDomain::init() {
    if (!NSObject::init()) {
        return nullptr;
    }
    setCurrentScheme(defaultScheme());
    return shared_from_this();
}

std::shared_ptr<ZelStyleDomain>
ZelStyleDomain::initWithDomainIdentifier(std::string_view identifier) {
    if (!init()) {
        return nullptr;
    }
    const std::scoped_lock guard(state_->mutex);
    state_->domainIdentifier = std::string(identifier);
    return std::static_pointer_cast<ZelStyleDomain>(shared_from_this());
}

std::optional<std::string> ZelStyleDomain::domainIdentifier() const {
    const std::scoped_lock guard(state_->mutex);
    return state_->domainIdentifier;
}

std::optional<std::type_index> ZelStyleDomain::styleClass() const {
    const std::scoped_lock guard(state_->mutex);
    return state_->styleClass;
}

void ZelStyleDomain::setStyleClass(std::optional<std::type_index> styleClass) {
    const std::scoped_lock guard(state_->mutex);
    state_->styleClass = styleClass;
}

std::shared_ptr<ZelStyleScheme>
ZelStyleDomain::schemeForIdentifier(std::optional<std::string_view> identifier) {
    if (!identifier) {
        throw ZelInvalidArgument("a scheme identifier must not be nil");
    }
    const RecursiveGuard guard(state_->schemesLock);
    const auto found = state_->schemesByIdentifier().find(*identifier);
    if (found != state_->schemesByIdentifier().end()) {
        return found->second;
    }
    // Nil while the domain ends, when it may still have to make its light scheme.
    const auto self = std::static_pointer_cast<ZelStyleDomain>(weak_from_this().lock());
    auto scheme = alloc<ZelStyleScheme>()->initWithIdentifier(identifier, self);
    state_->schemesByIdentifier().emplace(*identifier, scheme);
    return scheme;
}

std::shared_ptr<ZelStyleScheme> ZelStyleDomain::defaultScheme() {
    return schemeForIdentifier(ZelStyleSchemeIdentifierDefault);
}

std::shared_ptr<ZelStyleScheme> ZelStyleDomain::lightScheme() {
    return schemeForIdentifier(ZelStyleSchemeIdentifierLight);
}

std::shared_ptr<ZelStyleScheme> ZelStyleDomain::darkScheme() {
    return schemeForIdentifier(ZelStyleSchemeIdentifierDark);
}

std::shared_ptr<ZelStyleScheme> ZelStyleDomain::currentScheme() const {
    const std::scoped_lock guard(state_->mutex);
    return state_->currentScheme;
}

void ZelStyleDomain::setCurrentScheme(const std::shared_ptr<ZelStyleScheme>& scheme) {
    const auto self = weak_from_this().lock(); // what is dropped may hold the last reference
    { // it ends after the mutex is released and before anybody is told
        std::shared_ptr<ZelStyleScheme> former = scheme;
        std::shared_ptr<ZelStyle> formerMain;
        const std::scoped_lock guard(state_->mutex);
        if (scheme == state_->currentScheme) {
            return;
        }
        state_->currentScheme.swap(former);
        state_->mainStyle.swap(formerMain);
        ++state_->mainStyleDrops;
        StyleLookupEpoch::advance();
    }
    notifyForStyleChangeOf(nullptr, {.withEvent = ZelStyleChangeEventChanged});
}

bool ZelStyleDomain::schemeFollowsSystem() const {
    return state_->schemeFollowsSystem.load(std::memory_order_acquire);
}

void ZelStyleDomain::setSchemeFollowsSystem(bool follows) {
    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    if (state_->schemeFollowsSystem.exchange(follows, std::memory_order_acq_rel) == follows) {
        return;
    }
    if (follows) {
        try {
            // The centre holds the domain while it calls it.
            center.addObserver(
                shared_from_this(),
                [this](const NSNotification& each) { _updateFromSystemAppearance(&each); },
                systemAppearanceChangedNotification(), nullptr);
        } catch (...) { // no memory
            state_->schemeFollowsSystem.store(false, std::memory_order_release);
            throw;
        }
    } else {
        center.removeObserver(*this, systemAppearanceChangedNotification(), nullptr);
    }
    _updateFromSystemAppearance(nullptr);
}

// Deliberate: a domain that doesn't follow goes to its light scheme, not to its default one.
void ZelStyleDomain::_updateFromSystemAppearance(const NSNotification* /*notification*/) {
    auto target = lightScheme();
    if (schemeFollowsSystem() && systemAppearanceIsDark()) {
        target = darkScheme();
    }
    if (target != currentScheme()) {
        setCurrentScheme(target);
    }
}

} // namespace v1
} // namespace zel
