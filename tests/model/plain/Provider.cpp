// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/World.h"

#include <algorithm>

namespace plain {

Ref<Provider>
Provider::providerWithIdentifier(const std::string& identifier,
                                 const std::optional<std::vector<std::string>>& afterRunning,
                                 ProviderBlock usingBlock) {
    const auto provider = std::make_shared<Provider>();
    provider->identifier_ = identifier;
    if (afterRunning) {
        provider->required_.insert(afterRunning->begin(), afterRunning->end());
    }
    provider->block_ = std::move(usingBlock);
    return provider;
}

namespace {

/// Walks the registry; raises where it has changed when the walk goes on.
template <class Visit>
void eachProvider(const Visit& visit) {
    const auto before = world().providerMutations;
    for (std::size_t i = 0; i < world().providers.size(); ++i) {
        const auto each = world().providers[i];
        visit(each);
        if (world().providerMutations != before) {
            throw EnumerationMutation("providers");
        }
    }
}

} // namespace

void Provider::run(const Ref<Provider>& provider, const Ref<Style>& style,
                   const Ref<Scheme>& scheme) {
    const auto callHooks = [&](ApplyBlock Provider::*hook) {
        eachProvider([&](const Ref<Provider>& each) {
            if (const auto& block = (*each).*hook) {
                block(style, scheme, each, provider);
            }
        });
    };
    callHooks(&Provider::willApply_);
    if (provider->block_) {
        provider->block_(style, scheme);
    }
    callHooks(&Provider::didApply_);
}

void Provider::setUpDefaultValues(const Ref<Style>& style, const Ref<Scheme>& scheme) {
    std::set<std::string> applied;
    for (bool ran = true; ran;) {
        ran = false;
        eachProvider([&](const Ref<Provider>& each) {
            if (!applied.contains(each->identifier_) &&
                std::ranges::includes(applied, each->required_)) {
                run(each, style, scheme);
                applied.insert(each->identifier_);
                ran = true;
            }
        });
    }
}

void Style::addDefaultValueProvider(const Ref<Provider>& provider) {
    if (!provider) {
        throw InvalidArgument("nil provider");
    }
    auto& providers = world().providers;
    providers.insert(provider->identifier() == "main" ? providers.begin() : providers.end(),
                     provider);
    ++world().providerMutations;
}

void Style::removeDefaultValueProvider(const Ref<Provider>& provider) {
    if (std::erase(world().providers, provider) > 0) {
        ++world().providerMutations;
    }
}

} // namespace plain
