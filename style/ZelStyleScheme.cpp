// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleScheme.h>

#include "platform/locks/Guarded.h"
#include "platform/objects/AtomicWeakReference.h"
#include "platform/text/Identifier.h"
#include "style/StyleLookupEpoch.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>

#include <utility>

namespace zel {
inline namespace v1 {

constinit std::atomic<std::uint64_t> StyleLookupEpoch::epoch_{1};

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
    AtomicWeakReference<ZelStyleDomain> domain;
    AtomicIdentifier identifier;
    mutable RecursiveLock lock{LockRank::SchemeStyles};
    Guarded<Styles> guarded;

    [[nodiscard]] Styles& styles() noexcept { return guarded.with(lock); }
};

ZelStyleScheme::ZelStyleScheme() : state_(std::make_unique<State>()) {}

ZelStyleScheme::~ZelStyleScheme() = default;

std::shared_ptr<ZelStyleScheme>
ZelStyleScheme::initWithIdentifier(std::optional<std::string_view> identifier,
                                   const std::shared_ptr<ZelStyleDomain>& domain) {
    if (!init()) {
        return nullptr;
    }
    state_->identifier.store(identifier);
    state_->domain.store(domain);
    return std::static_pointer_cast<ZelStyleScheme>(shared_from_this());
}

void ZelStyleScheme::addStyle(const std::shared_ptr<ZelStyle>& style) {
    if (!style) {
        return;
    }
    // These end outside the lock; the first becomes the replaced style.
    std::shared_ptr<ZelStyle> added = style;
    const std::shared_ptr<ZelStyleDomain> owner = domain();
    const RecursiveGuard guard(state_->lock);
    added->setDomain(owner);
    added->setScheme(std::static_pointer_cast<ZelStyleScheme>(shared_from_this()));
    state_->styles()[keyOf(*added)].swap(added);
    StyleLookupEpoch::advance();
}

void ZelStyleScheme::removeStyle(const std::shared_ptr<ZelStyle>& style) {
    if (!style) {
        return;
    }
    Styles::node_type removed; // ends outside the lock
    const RecursiveGuard guard(state_->lock);
    style->setDomain(nullptr);
    style->setScheme(nullptr);
    removed = state_->styles().extract(keyOf(*style));
    StyleLookupEpoch::advance();
}

std::shared_ptr<ZelStyle>
ZelStyleScheme::styleForIdentifier(std::optional<std::string_view> identifier) const {
    if (!identifier) {
        return nullptr;
    }
    const RecursiveGuard guard(state_->lock);
    const auto found = state_->styles().find(*identifier);
    return found == state_->styles().end() ? nullptr : found->second;
}

std::shared_ptr<ZelStyleDomain> ZelStyleScheme::domain() const {
    return state_->domain.load();
}

std::optional<std::string> ZelStyleScheme::identifier() const {
    return state_->identifier.copy();
}

ZelStyleScheme::Styles ZelStyleScheme::stylesByIdentifier() const {
    const RecursiveGuard guard(state_->lock);
    return state_->styles();
}

void ZelStyleScheme::setStylesByIdentifier(Styles styles) {
    const RecursiveGuard guard(state_->lock);
    state_->styles().swap(styles);
    StyleLookupEpoch::advance();
}

} // namespace v1
} // namespace zel
