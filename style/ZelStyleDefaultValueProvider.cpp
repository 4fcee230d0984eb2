// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>

#include "platform/locks/PrivateLock.h"
#include "platform/objects/HostFunction.h"

#include <utility>

namespace zel::inline v1 {

std::string_view ZelStyleDefaultValueProviderIdentifierBase = "base";
std::string_view ZelStyleDefaultValueProviderIdentifierMain = "main";

/// The blocks are called where they are kept, so that what one keeps lasts from run to run.
struct ZelStyleDefaultValueProvider::State {
    PrivateLock lock;
    std::optional<std::string> identifier ZEL_GUARDED_BY(lock);
    std::optional<Identifiers> required ZEL_GUARDED_BY(lock);
    HostFunction<ProviderBlock> providerBlock;
    HostFunction<ApplyBlock> willApplyBlock;
    HostFunction<ApplyBlock> didApplyBlock;
};

ZelStyleDefaultValueProvider::ZelStyleDefaultValueProvider() : state_(std::make_unique<State>()) {}

ZelStyleDefaultValueProvider::~ZelStyleDefaultValueProvider() = default;

std::shared_ptr<ZelStyleDefaultValueProvider> ZelStyleDefaultValueProvider::initWithIdentifier(
    std::string_view identifier, const std::optional<std::vector<std::string>>& afterRunning,
    ProviderBlock usingBlock) {
    if (!init()) {
        return nullptr;
    }
    {
        const PrivateGuard guard(state_->lock);
        state_->identifier = std::string(identifier);
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
    if (const auto block = state_->providerBlock.get()) {
        (*block)(style, withScheme);
    }
}

void ZelStyleDefaultValueProvider::willApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const auto block = state_->willApplyBlock.get()) {
        (*block)(toStyle, withScheme,
                 std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()),
                 provider);
    }
}

void ZelStyleDefaultValueProvider::didApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const auto block = state_->didApplyBlock.get()) {
        (*block)(toStyle, withScheme,
                 std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()),
                 provider);
    }
}

std::optional<std::string> ZelStyleDefaultValueProvider::identifier() const {
    const PrivateGuard guard(state_->lock);
    return state_->identifier;
}

std::optional<ZelStyleDefaultValueProvider::Identifiers>
ZelStyleDefaultValueProvider::requiredDefaultValueProviders() const {
    const PrivateGuard guard(state_->lock);
    return state_->required;
}

void ZelStyleDefaultValueProvider::setRequiredDefaultValueProviders(
    std::optional<Identifiers> required) {
    const PrivateGuard guard(state_->lock);
    state_->required.swap(required);
}

ZelStyleDefaultValueProvider::ProviderBlock ZelStyleDefaultValueProvider::providerBlock() const {
    return state_->providerBlock.copy();
}

void ZelStyleDefaultValueProvider::setProviderBlock(ProviderBlock block) {
    state_->providerBlock.set(std::move(block));
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::willApplyBlock() const {
    return state_->willApplyBlock.copy();
}

void ZelStyleDefaultValueProvider::setWillApplyBlock(ApplyBlock block) {
    state_->willApplyBlock.set(std::move(block));
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::didApplyBlock() const {
    return state_->didApplyBlock.copy();
}

void ZelStyleDefaultValueProvider::setDidApplyBlock(ApplyBlock block) {
    state_->didApplyBlock.set(std::move(block));
}

} // namespace zel::inline v1
