// SPDX-License-Identifier: Apache-2.0
#include "appearance/ModeState.h"

#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleManager.h>
#include <ZelStyleKit/ZelStyleScheme.h>

namespace zel::inline v1 {

std::string_view ZelStyleManagerModeIdentifierLight = "always-light";
std::string_view ZelStyleManagerModeIdentifierDark = "always-dark";
std::string_view ZelStyleManagerModeIdentifierFollowSystem = "follow-system";

namespace {

/// Makes a scheme of the default domain current for good. Deliberate: following ends first, which
/// makes the light scheme current, so a switch from a dark system to "always-dark" passes by light.
void pin(ZelStyleDomain& domain, std::string_view schemeIdentifier) {
    const auto scheme = domain.schemeForIdentifier(schemeIdentifier);
    domain.setSchemeFollowsSystem(false);
    domain.setCurrentScheme(scheme);
}

} // namespace

ZelStyleManagerMode::ZelStyleManagerMode() : state_(std::make_unique<State>()) {}

ZelStyleManagerMode::~ZelStyleManagerMode() = default;

std::shared_ptr<ZelStyleManagerMode>
ZelStyleManagerMode::initWithIdentifier(std::optional<std::string_view> identifier,
                                        std::uint64_t rank, std::optional<std::string_view> name) {
    if (!init()) {
        return nullptr;
    }
    setIdentifier(identifier);
    setRank(rank);
    setName(name);
    return std::static_pointer_cast<ZelStyleManagerMode>(shared_from_this());
}

// Deliberate: it is not stored. Deliberate: modes are told by these texts, not by the
// exported variables, and one with another identifier does nothing.
void ZelStyleManagerMode::setActive(bool active) {
    if (!active) {
        return;
    }
    const auto domain = ZelStyleDomain::defaultDomain();
    const std::optional<std::string> mode = identifier();
    if (mode == "always-dark") {
        pin(*domain, ZelStyleSchemeIdentifierDark);
    } else if (mode == "always-light") {
        pin(*domain, ZelStyleSchemeIdentifierLight);
    } else if (mode == "follow-system") {
        domain->setSchemeFollowsSystem(true);
    }
}

std::shared_ptr<ZelStyleManager> ZelStyleManagerMode::manager() const {
    const PrivateGuard guard(modesLock);
    return state_->manager.lock();
}

void ZelStyleManagerMode::setManager(const std::shared_ptr<ZelStyleManager>& manager) {
    std::weak_ptr<ZelStyleManager> replaced = manager; // ends after the guard
    const PrivateGuard guard(modesLock);
    state_->manager.swap(replaced);
}

std::optional<std::string> ZelStyleManagerMode::identifier() const {
    const PrivateGuard guard(modesLock);
    return state_->identifier;
}

void ZelStyleManagerMode::setIdentifier(std::optional<std::string_view> identifier) {
    const PrivateGuard guard(modesLock);
    state_->identifier = std::optional<std::string>(identifier);
}

std::optional<std::string> ZelStyleManagerMode::name() const {
    const PrivateGuard guard(modesLock);
    return state_->name;
}

void ZelStyleManagerMode::setName(std::optional<std::string_view> name) {
    const PrivateGuard guard(modesLock);
    state_->name = std::optional<std::string>(name);
}

std::uint64_t ZelStyleManagerMode::rank() const {
    const PrivateGuard guard(modesLock);
    return state_->rank;
}

void ZelStyleManagerMode::setRank(std::uint64_t rank) {
    const PrivateGuard guard(modesLock);
    state_->rank = rank;
}

} // namespace zel::inline v1
