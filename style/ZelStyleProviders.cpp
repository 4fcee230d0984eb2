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

/// One style's default setup: passes over the registry until one runs no provider.
class DefaultSetup {
public:
    DefaultSetup(const std::shared_ptr<ZelStyle>& style,
                 const std::shared_ptr<ZelStyleScheme>& scheme)
        : style_(style), scheme_(scheme) {}

    void run() {
        std::size_t ranInPass = 0;
        do {
            ranInPass = 0;
            forEachProvider([&](const Provider& provider) {
                if (isDue(*provider)) {
                    apply(provider);
                    ++ranInPass;
                }
            });
        } while (ranInPass > 0);
    }

private:
    [[nodiscard]] bool isDue(const ZelStyleDefaultValueProvider& provider) const {
        if (applied_.contains(provider.identifier())) {
            return false;
        }
        const auto required = provider.requiredDefaultValueProviders();
        return !required || std::ranges::all_of(*required, [&](const std::string& each) {
            return applied_.contains(each);
        });
    }

    void apply(const Provider& provider) {
        forEachProvider([&](const Provider& each) { each->willApply(provider, style_, scheme_); });
        provider->provideDefaultValuesFor(style_, scheme_);
        forEachProvider([&](const Provider& each) { each->didApply(provider, style_, scheme_); });
        applied_.insert(provider->identifier());
    }

    const std::shared_ptr<ZelStyle>& style_;
    const std::shared_ptr<ZelStyleScheme>& scheme_;
    std::set<std::optional<std::string>> applied_;
};

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

void ZelStyleInternals::_setupWithDefaultValuesUsingScheme(
    const std::shared_ptr<ZelStyle>& style, const std::shared_ptr<ZelStyleScheme>& scheme) {
    DefaultSetup(style, scheme).run();
}

} // namespace zel::inline v1
