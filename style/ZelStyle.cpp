// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyle.h>

#include "style/StyleLookupEpoch.h"
#include "style/StyleState.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyleScheme.h>

namespace zel {
inline namespace v1 {
namespace {

std::uint64_t nextSerial() noexcept {
    static constinit std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace

ZelStyleToken::ZelStyleToken(const std::shared_ptr<ZelStyle>& style) noexcept
    : serial_(style ? style->token().serial() : 0) {}

ZelStyle::ZelStyle() : serial_(nextSerial()), state_(std::make_unique<StyleState>()) {}

ZelStyle::~ZelStyle() {
    StyleLookupEpoch::advance(); // its children have no parent now
    delete merged_.load(std::memory_order_acquire);
}

std::shared_ptr<ZelStyle> ZelStyle::self() const {
    return std::static_pointer_cast<ZelStyle>(
        std::const_pointer_cast<NSObject>(shared_from_this()));
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
    state_->identifier.store(identifier);
    setDomain(given ? given->domain() : nullptr);
    setParentStyle(parent);
    if (!parent) {
        _setupWithDefaultValuesUsingScheme(given);
    }
    return self();
}

std::shared_ptr<ZelStyle>
ZelStyle::initWithIdentifier(std::optional<std::string_view> identifier,
                             const std::shared_ptr<ZelStyleScheme>& scheme) {
    return initWithIdentifier(identifier, scheme, nullptr);
}

std::shared_ptr<ZelStyleDomain> ZelStyle::domain() const {
    return state_->domain.load();
}

void ZelStyle::setDomain(const std::shared_ptr<ZelStyleDomain>& domain) {
    state_->domain.store(domain);
}

std::shared_ptr<ZelStyleScheme> ZelStyle::scheme() const {
    return state_->scheme.load();
}

void ZelStyle::setScheme(const std::shared_ptr<ZelStyleScheme>& scheme) {
    state_->scheme.store(scheme);
}

std::shared_ptr<ZelStyle> ZelStyle::parentStyle() const {
    return state_->parentStyle.load();
}

void ZelStyle::setParentStyle(const std::shared_ptr<ZelStyle>& parentStyle) {
    { // whoever holds this style's values and then takes its parent's has the parent as it is
        const RecursiveGuard guard(state_->valuesLock);
        state_->parentStyle.store(parentStyle);
        state_->valuesLock.forgetOrder();
    }
    StyleLookupEpoch::advance(); // another family
}

std::optional<std::string> ZelStyle::identifier() const {
    return state_->identifier.copy();
}

void ZelStyle::setIdentifier(std::optional<std::string_view> identifier) {
    state_->identifier.store(identifier);
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

} // namespace v1
} // namespace zel
