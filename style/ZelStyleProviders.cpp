// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <set>

namespace zel::inline v1 {
namespace {

using Provider = std::shared_ptr<ZelStyleDefaultValueProvider>;

/// The providers of the process. Adding, removing and walking take no lock: providers are expected
/// to be added early, on one thread.
struct ProviderRegistry {
    std::vector<Provider> providers;
    std::uint64_t mutations = 0;
};

/// Made with the built-in providers in it when first used, so that they are there before any client
/// code can look, static initialisers and static linking included.
ProviderRegistry& providerRegistry() {
    static auto* const made = new ProviderRegistry; // never destroyed: styles may be made at exit
    static std::once_flag once;
    static thread_local bool loading = false; // the loaders add to the registry themselves
    if (!loading) {
        std::call_once(once, [] {
            loading = true;
            try {
                ZelStyle::load();
            } catch (...) { // no memory: the next use loads afresh
                made->providers.clear();
                loading = false;
                throw;
            }
            loading = false;
        });
    }
    return *made;
}

/// Calls `visit` for each provider, front to back; raises once a visit has changed the registry.
template <class Visit>
void forEachProvider(Visit visit) {
    ProviderRegistry& all = providerRegistry();
    const std::uint64_t mutations = all.mutations;
    for (std::size_t i = 0; i < all.providers.size(); ++i) {
        const Provider provider = all.providers[i]; // a visit may drop it
        visit(provider);
        if (all.mutations != mutations) {
            throw ZelEnumerationMutation("default value providers changed during a setup");
        }
    }
}

/// Whether all providers that it requires were applied, and it wasn't.
bool isDue(const ZelStyleDefaultValueProvider& provider,
           const std::set<std::optional<std::string>>& applied) {
    const auto required = provider.requiredDefaultValueProviders();
    return !applied.contains(provider.identifier()) &&
           std::ranges::all_of(required.value_or(ZelStyleDefaultValueProvider::Identifiers()),
                               [&](const std::string& each) { return applied.contains(each); });
}

} // namespace

const std::vector<Provider>& ZelStyleInternals::_defaultValueProviders() {
    return providerRegistry().providers;
}

ZelStyle::Providers ZelStyle::defaultValueProviders() {
    return providerRegistry().providers;
}

// Deliberate: a provider named "main" always goes to the front, the newest first.
void ZelStyle::addDefaultValueProvider(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider) {
    if (!provider) {
        throw ZelInvalidArgument("a default value provider must not be nil");
    }
    ProviderRegistry& all = providerRegistry();
    const bool isMain = provider->identifier() == ZelStyleDefaultValueProviderIdentifierMain;
    all.providers.insert(isMain ? all.providers.begin() : all.providers.end(), provider);
    ++all.mutations;
}

void ZelStyle::removeDefaultValueProvider(
    const std::shared_ptr<ZelStyleDefaultValueProvider>& provider) {
    ProviderRegistry& all = providerRegistry();
    if (std::erase(all.providers, provider) > 0) {
        ++all.mutations;
    }
}

// Passes over the registry until one runs no provider.
void ZelStyleInternals::_setupWithDefaultValuesUsingScheme(
    const std::shared_ptr<ZelStyle>& style, const std::shared_ptr<ZelStyleScheme>& scheme) {
    std::set<std::optional<std::string>> applied; // by identifier
    bool hasRun = false;
    do {
        hasRun = false;
        forEachProvider([&](const Provider& provider) {
            if (!isDue(*provider, applied)) {
                return;
            }
            forEachProvider(
                [&](const Provider& each) { each->willApply(provider, style, scheme); });
            provider->provideDefaultValuesFor(style, scheme);
            forEachProvider([&](const Provider& each) { each->didApply(provider, style, scheme); });
            applied.insert(provider->identifier());
            hasRun = true;
        });
    } while (hasRun);
}

} // namespace zel::inline v1
