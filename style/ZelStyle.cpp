// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyle.h>

#include "style/LookupChanges.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyleScheme.h>

#include <utility>

namespace zel::inline v1 {

namespace {

/// Sets a field of a style's state; what it held is destroyed after the lock is released.
template <class State, class Field, class Value>
void replace(State& state, Field State::*member, Value value) {
    Field replacement = std::move(value);
    const PrivateGuard guard(stylesLock);
    (state.*member).swap(replacement);
}

} // namespace

ZelStyleToken::ZelStyleToken(const std::shared_ptr<ZelStyle>& style) noexcept
    : serial_(style ? style->token().serial() : 0) {}

ZelStyle::State::~State() {
    delete merged.load(std::memory_order_acquire);
}

ZelStyle::ZelStyle() : state_(std::make_unique<State>()) {}

ZelStyle::~ZelStyle() {
    lookupChanges.increment(); // its children have no parent now
}

ZelStyleToken ZelStyle::token() const noexcept {
    return ZelStyleToken(state_->serial);
}

std::shared_ptr<ZelStyle>
ZelStyle::initWithIdentifier(std::optional<std::string_view> identifier,
                             const std::shared_ptr<ZelStyleScheme>& scheme,
                             const std::shared_ptr<ZelStyle>& parentStyle) {
    const std::shared_ptr<ZelStyleScheme> given = scheme; // what runs below may clear the caller's
    const std::shared_ptr<ZelStyle> parent = parentStyle;
    if (!init()) {
        return nullptr;
    }
    auto self = std::static_pointer_cast<ZelStyle>(shared_from_this());
    replace(*state_, &State::identifier, makeIdentifier(identifier));
    setDomain(given ? given->domain() : nullptr);
    setParentStyle(parent);
    if (!parent) {
        ZelStyleInternals::_setupWithDefaultValuesUsingScheme(self, given);
    }
    return self;
}

std::shared_ptr<ZelStyleDomain> ZelStyle::domain() const {
    const PrivateGuard guard(stylesLock);
    return state_->domain.lock();
}

void ZelStyle::setDomain(const std::shared_ptr<ZelStyleDomain>& domain) {
    replace(*state_, &State::domain, domain);
}

std::shared_ptr<ZelStyleScheme> ZelStyle::scheme() const {
    const PrivateGuard guard(stylesLock);
    return state_->scheme.lock();
}

void ZelStyle::setScheme(const std::shared_ptr<ZelStyleScheme>& scheme) {
    replace(*state_, &State::scheme, scheme);
}

std::shared_ptr<ZelStyle> ZelStyle::parentStyle() const {
    const PrivateGuard guard(stylesLock);
    return state_->parentStyle.lock();
}

void ZelStyle::setParentStyle(const std::shared_ptr<ZelStyle>& parentStyle) {
    replace(*state_, &State::parentStyle, parentStyle);
    lookupChanges.increment(); // it descends from other styles
}

std::optional<std::string> ZelStyle::identifier() const {
    const PrivateGuard guard(stylesLock);
    return textOf(state_->identifier);
}

void ZelStyle::setIdentifier(std::optional<std::string_view> identifier) {
    replace(*state_, &State::identifier, makeIdentifier(identifier));
}

bool ZelStyle::isChildOf(const std::shared_ptr<ZelStyle>& style) const {
    for (auto ancestor = parentStyle(); ancestor; ancestor = ancestor->parentStyle()) {
        if (ancestor == style) {
            return true;
        }
    }
    return false;
}

std::uint64_t ZelStyle::seed() const {
    std::uint64_t sum = state_->counter.load(std::memory_order_acquire);
    for (auto ancestor = parentStyle(); ancestor; ancestor = ancestor->parentStyle()) {
        sum += ancestor->state_->counter.load(std::memory_order_acquire);
    }
    return sum;
}

} // namespace zel::inline v1
