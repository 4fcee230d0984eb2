// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>

#include <utility>

namespace zel::inline v1 {
namespace {

template <class Block>
Block copyOf(const std::shared_ptr<const Block>& block) {
    return block ? *block : Block();
}

} // namespace

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
    if (const auto block = held(providerBlock_)) {
        (*block)(style, withScheme);
    }
}

void ZelStyleDefaultValueProvider::willApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const auto block = held(willApplyBlock_)) {
        (*block)(toStyle, withScheme,
                 std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()),
                 provider);
    }
}

void ZelStyleDefaultValueProvider::didApply(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider,
    const std::shared_ptr<ZelStyle>& toStyle, const std::shared_ptr<ZelStyleScheme>& withScheme) {
    if (const auto block = held(didApplyBlock_)) {
        (*block)(toStyle, withScheme,
                 std::static_pointer_cast<ZelStyleDefaultValueProvider>(shared_from_this()),
                 provider);
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

template <class Block>
std::shared_ptr<const Block>
ZelStyleDefaultValueProvider::held(const std::shared_ptr<const Block>& field) const {
    const std::scoped_lock guard(mutex_);
    return field;
}

// The replaced callback ends after the lock is released, and after its last run: it may hold
// anything.
template <class Block>
void ZelStyleDefaultValueProvider::replace(std::shared_ptr<const Block>& field, Block block) {
    auto shared = block ? std::make_shared<const Block>(std::move(block)) : nullptr;
    const std::scoped_lock guard(mutex_);
    field.swap(shared);
}

ZelStyleDefaultValueProvider::ProviderBlock ZelStyleDefaultValueProvider::providerBlock() const {
    return copyOf(held(providerBlock_));
}

void ZelStyleDefaultValueProvider::setProviderBlock(ProviderBlock block) {
    replace(providerBlock_, std::move(block));
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::willApplyBlock() const {
    return copyOf(held(willApplyBlock_));
}

void ZelStyleDefaultValueProvider::setWillApplyBlock(ApplyBlock block) {
    replace(willApplyBlock_, std::move(block));
}

ZelStyleDefaultValueProvider::ApplyBlock ZelStyleDefaultValueProvider::didApplyBlock() const {
    return copyOf(held(didApplyBlock_));
}

void ZelStyleDefaultValueProvider::setDidApplyBlock(ApplyBlock block) {
    replace(didApplyBlock_, std::move(block));
}

} // namespace zel::inline v1
