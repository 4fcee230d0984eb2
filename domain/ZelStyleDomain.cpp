// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainInternals.h"
#include "style/LookupChanges.h"

#include <ZelStyleKit/NSNotificationCenter.h>
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleSystemAppearance.h>

namespace zel::inline v1 {

std::string_view ZelStyleDomainIdentifierDefault = "default";
std::string_view ZelStyleIdentifierMain = "main";

namespace {

/// The scheme that the system's appearance asks for; the light one is made in any case.
std::shared_ptr<ZelStyleScheme> systemScheme(ZelStyleDomain& domain) {
    auto light = domain.lightScheme();
    return ZelStyleSystemAppearance::sharedSystemAppearance()->currentAppearanceType() ==
                   ZelStyleSystemAppearanceTypeDark
               ? domain.darkScheme()
               : light;
}

} // namespace

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
    const PrivateGuard guard(state_->lock);
    state_->domainIdentifier = std::string(identifier);
    return std::static_pointer_cast<ZelStyleDomain>(shared_from_this());
}

std::optional<std::string> ZelStyleDomain::domainIdentifier() const {
    const PrivateGuard guard(state_->lock);
    return state_->domainIdentifier;
}

std::optional<std::type_index> ZelStyleDomain::styleClass() const {
    const PrivateGuard guard(state_->lock);
    return state_->styleClass;
}

void ZelStyleDomain::setStyleClass(std::optional<std::type_index> styleClass) {
    const PrivateGuard guard(state_->lock);
    state_->styleClass = styleClass;
}

std::shared_ptr<ZelStyleScheme>
ZelStyleDomain::schemeForIdentifier(std::optional<std::string_view> identifier) {
    if (!identifier) {
        throw ZelInvalidArgument("a scheme identifier must not be nil");
    }
    if (auto present = state_->findScheme(*identifier)) {
        return present;
    }
    // Nil while the domain ends, when it may still have to make its light scheme.
    const auto self = std::static_pointer_cast<ZelStyleDomain>(weak_from_this().lock());
    auto made = alloc<ZelStyleScheme>()->initWithIdentifier(identifier, self);
    const PrivateGuard guard(state_->lock); // another thread may have made it meanwhile
    return state_->schemesByIdentifier.try_emplace(std::string(*identifier), made).first->second;
}

std::shared_ptr<ZelStyleScheme> ZelStyleDomain::State::findScheme(std::string_view identifier) {
    const PrivateGuard guard(lock);
    const auto found = schemesByIdentifier.find(identifier);
    return found == schemesByIdentifier.end() ? nullptr : found->second;
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
    const PrivateGuard guard(state_->lock);
    return state_->currentScheme;
}

void ZelStyleDomain::setCurrentScheme(const std::shared_ptr<ZelStyleScheme>& scheme) {
    const auto self = weak_from_this().lock(); // what is dropped may hold the last reference
    { // what is replaced ends after the lock, before anybody is notified
        std::shared_ptr<ZelStyleScheme> former = scheme;
        std::shared_ptr<ZelStyle> formerMain;
        const PrivateGuard guard(state_->lock);
        if (scheme == state_->currentScheme) {
            return;
        }
        state_->currentScheme.swap(former);
        state_->mainStyle.swap(formerMain);
        lookupChanges.increment();
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
            (void)systemScheme(*this); // makes what is needed below
            // The centre holds the domain while it calls it.
            center.addObserver(
                shared_from_this(),
                [this](const auto&) { DomainInternals::_updateFromSystemAppearance(*this); },
                ZelStyleSystemAppearanceChangedNotification, nullptr);
        } catch (...) { // no memory
            state_->schemeFollowsSystem.store(false, std::memory_order_release);
            throw;
        }
    } else {
        center.removeObserver(*this, ZelStyleSystemAppearanceChangedNotification, nullptr);
    }
    DomainInternals::_updateFromSystemAppearance(*this);
}

// Deliberate: a domain that doesn't follow goes to its light scheme, not to its default one.
void DomainInternals::_updateFromSystemAppearance(ZelStyleDomain& domain) {
    const auto target = domain.schemeFollowsSystem() ? systemScheme(domain) : domain.lightScheme();
    if (target != domain.currentScheme()) {
        domain.setCurrentScheme(target);
    }
}

// Not kept where something has changed during the look-up, on another thread.
std::shared_ptr<ZelStyle> ZelStyleDomain::mainStyle() {
    {
        const PrivateGuard guard(state_->lock);
        if (state_->mainStyle) {
            return state_->mainStyle;
        }
    }
    const std::uint64_t lookups = lookupChanges.now();
    auto style = styleForIdentifier(ZelStyleIdentifierMain);
    const PrivateGuard guard(state_->lock);
    if (lookups == lookupChanges.now() && !state_->mainStyle) {
        state_->mainStyle = style;
    }
    return style;
}

std::shared_ptr<ZelStyle>
ZelStyleDomain::styleForIdentifier(std::optional<std::string_view> identifier) {
    if (const auto current = currentScheme()) {
        if (auto style = current->styleForIdentifier(identifier)) {
            return style;
        }
    }
    const auto fallback = state_->findScheme(ZelStyleSchemeIdentifierDefault);
    return fallback ? fallback->styleForIdentifier(identifier) : nullptr;
}

} // namespace zel::inline v1
