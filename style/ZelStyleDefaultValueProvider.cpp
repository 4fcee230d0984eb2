// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>

#include <utility>

namespace zel {
inline namespace v1 {

std::string_view ZelStyleDefaultValueProviderIdentifierBase = "base";
std::string_view ZelStyleDefaultValueProviderIdentifierMain = "main";

ZelStyleDefaultValueProvider::ZelStyleDefaultValueProvider() = default;

ZelStyleDefaultValueProvider::~ZelStyleDefaultValueProvider() = default;

std::shared_ptr<ZelStyleDefaultValueProvider> ZelStyleDefaultValueProvider::providerWithIdentifier(
    std::string_view identifier, const std::optional<std::vector<std::string>>& afterRunning,
    ProviderBlock usingBlock) {
    return alloc<ZelStyleDefaultValueProvider>()->initWithIdentifier(identifier, afterRunning,
                                                                     std::move(usingBlock));
}

std::shared_ptr<ZelStyleDefaultValueProvider> ZelStyleDefaultValueProvider::initWithIdentifier(
    std::string_view identifier, const std::optional<std::vector<std::string>>& afterRunning,
    ProviderBlock usingBlock) {
    if (!init()) {
        return nullptr;
    }
    {
        const std::scoped_lock guard(mutex_);
        identifier_ = std::string(identifier);
    }
    const bool hasRequirement = afterRunning && !afterRunning->empty();
    setRequiredDefaultValueProviders(
        hasRequirement ? std::optional(Identifiers(afterRunning->begin(), afterRunning->end()))
                       : std::nullopt);
    setProviderBlock(std::move(usingBlock));
    return std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this());
}

void ZelStyleDefaultValueProvider::provideDefaultValuesFor(
    const std::shared_ptr<ZelStyle>& style, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const ProviderBlock block = providerBlock()) {
        block(style, withScheme);
    }
}

void ZelStyleDefaultValueProvider::willApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const ApplyBlock block = willApplyBlock()) {
        block(toStyle, withScheme,
              std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()), provider);
    }
}

void ZelStyleDefaultValueProvider::didApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const ApplyBlock block = didApplyBlock()) {
        block(toStyle, withScheme,
              std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()), provider);
    }
}

std::optional<std::string> ZelStyleDefaultValueProvider::identifier() const {
    const std::scoped_lock guard(mutex_);
    return identifier_;
}

std::optional<ZelStyleDefaultValueProvider::Identifiers>
ZelStyleDefaultValueProvider::requiredDefaultValueProviders() const {
    const std::scoped_lock guard(mutex_);
    return required_;
}

void ZelStyleDefaultValueProvider::setRequiredDefaultValueProviders(
    std::optional<Identifiers> required) {
    const std::scoped_lock guard(mutex_);
    required_ = std::move(required);
}

// The replaced callback ends after the lock is released: it may hold anything.

ZelStyleDefaultValueProvider::ProviderBlock ZelStyleDefaultValueProvider::providerBlock() const {
    const std::scoped_lock guard(mutex_);
    return providerBlock_;
}

void ZelStyleDefaultValueProvider::setProviderBlock(ProviderBlock block) {
    const std::scoped_lock guard(mutex_);
    providerBlock_.swap(block);
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::willApplyBlock() const {
    const std::scoped_lock guard(mutex_);
    return willApplyBlock_;
}

void ZelStyleDefaultValueProvider::setWillApplyBlock(ApplyBlock block) {
    const std::scoped_lock guard(mutex_);
    willApplyBlock_.swap(block);
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::didApplyBlock() const {
    const std::scoped_lock guard(mutex_);
    return didApplyBlock_;
}

void ZelStyleDefaultValueProvider::setDidApplyBlock(ApplyBlock block) {
    const std::scoped_lock guard(mutex_);
    didApplyBlock_.swap(block);
}

} // namespace v1
} // namespace zel
