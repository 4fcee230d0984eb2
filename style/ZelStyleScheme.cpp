// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleScheme.h>

#include "platform/locks/PrivateLock.h"
#include "platform/text/Identifier.h"
#include "style/LookupChanges.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>

#include <utility>

namespace zel::inline v1 {

std::string_view ZelStyleSchemeIdentifierDefault = "default";
std::string_view ZelStyleSchemeIdentifierLight = "light";
std::string_view ZelStyleSchemeIdentifierDark = "dark";

namespace {

/// The key a style stands under.
std::string keyOf(const ZelStyle& style) {
    auto identifier = style.identifier();
    if (!identifier) {
        throw ZelInvalidArgument("a style in a scheme must have an identifier");
    }
    return *std::move(identifier);
}

} // namespace

struct ZelStyleScheme::State {
    PrivateLock lock;
    std::weak_ptr<ZelStyleDomain> domain ZEL_GUARDED_BY(lock);
    Identifier identifier ZEL_GUARDED_BY(lock);
    Styles styles ZEL_GUARDED_BY(lock);
};

ZelStyleScheme::ZelStyleScheme() : state_(std::make_unique<State>()) {}

ZelStyleScheme::~ZelStyleScheme() = default;

std::shared_ptr<ZelStyleScheme>
ZelStyleScheme::initWithIdentifier(std::optional<std::string_view> identifier,
                                   const std::shared_ptr<ZelStyleDomain>& domain) {
    if (!init()) {
        return nullptr;
    }
    Identifier named = makeIdentifier(identifier);
    std::weak_ptr<ZelStyleDomain> owner = domain;
    const PrivateGuard guard(state_->lock);
    state_->identifier.swap(named);
    state_->domain.swap(owner);
    return std::static_pointer_cast<ZelStyleScheme>(shared_from_this());
}

// The references are set first, and stay set where the style has no identifier.
void ZelStyleScheme::addStyle(const std::shared_ptr<ZelStyle>& style) {
    if (!style) {
        throw ZelInvalidArgument("a style that is added to a scheme must not be nil");
    }
    std::shared_ptr<ZelStyle> added = style; // becomes the replaced style, which ends outside
    added->setDomain(domain());
    added->setScheme(std::static_pointer_cast<ZelStyleScheme>(shared_from_this()));
    std::string key = keyOf(*added);
    const PrivateGuard guard(state_->lock);
    state_->styles[std::move(key)].swap(added);
    lookupChanges.increment();
}

// Deliberate: what stands under the style's identifier goes, whichever style that is, and the given
// one's references are cleared in any case.
void ZelStyleScheme::removeStyle(const std::shared_ptr<ZelStyle>& style) {
    if (!style) {
        throw ZelInvalidArgument("a style that is removed from a scheme must not be nil");
    }
    const std::shared_ptr<ZelStyle> kept = style; // the table may hold the caller's reference
    kept->setDomain(nullptr);
    kept->setScheme(nullptr);
    const std::string key = keyOf(*kept);
    Styles::node_type removed; // ends outside the lock
    const PrivateGuard guard(state_->lock);
    removed = state_->styles.extract(key);
    lookupChanges.increment();
}

std::shared_ptr<ZelStyle>
ZelStyleScheme::styleForIdentifier(std::optional<std::string_view> identifier) const {
    if (!identifier) {
        return nullptr;
    }
    const PrivateGuard guard(state_->lock);
    const auto found = state_->styles.find(*identifier);
    return found == state_->styles.end() ? nullptr : found->second;
}

std::shared_ptr<ZelStyleDomain> ZelStyleScheme::domain() const {
    const PrivateGuard guard(state_->lock);
    return state_->domain.lock();
}

std::optional<std::string> ZelStyleScheme::identifier() const {
    const PrivateGuard guard(state_->lock);
    return textOf(state_->identifier);
}

ZelStyleScheme::Styles ZelStyleScheme::stylesByIdentifier() const {
    const PrivateGuard guard(state_->lock);
    return state_->styles;
}

void ZelStyleScheme::setStylesByIdentifier(Styles styles) {
    const PrivateGuard guard(state_->lock);
    state_->styles.swap(styles);
    lookupChanges.increment();
}

} // namespace zel::inline v1
