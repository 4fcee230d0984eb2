// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelStyleDefaultValueProvider.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zeltest {

using Provider = std::shared_ptr<zel::ZelStyleDefaultValueProvider>;
using Providers = std::vector<Provider>;

/// The registry of default value providers as it is now, front to back.
inline Providers registeredProviders() {
    return zel::ZelStyleInternals::_defaultValueProviders();
}

inline std::vector<std::string> registeredIdentifiers() {
    std::vector<std::string> identifiers;
    for (const Provider& each : registeredProviders()) {
        identifiers.push_back(each->identifier().value_or("(none)"));
    }
    return identifiers;
}

inline void removeAllProviders() {
    for (const Provider& each : registeredProviders()) {
        zel::ZelStyle::removeDefaultValueProvider(each);
    }
}

/// Puts the registry back, when it ends, to what it was when it was made.
class ProvidersRestored {
public:
    ProvidersRestored() : found_(registeredProviders()) {}
    ProvidersRestored(const ProvidersRestored&) = delete;
    ProvidersRestored& operator=(const ProvidersRestored&) = delete;
    ~ProvidersRestored() {
        removeAllProviders();
        for (const Provider& each : found_) { // those that are appended, in order
            if (each->identifier() != "main") {
                zel::ZelStyle::addDefaultValueProvider(each);
            }
        }
        for (auto each = found_.rbegin(); each != found_.rend(); ++each) {
            if ((*each)->identifier() == "main") { // those that go to the front
                zel::ZelStyle::addDefaultValueProvider(*each);
            }
        }
    }

private:
    const Providers found_;
};

/// A provider of no values; hooks and a callback may be set on it.
inline Provider
makeProvider(std::string_view identifier,
             const std::optional<std::vector<std::string>>& afterRunning = std::nullopt,
             zel::ZelStyleDefaultValueProvider::ProviderBlock block = nullptr) {
    return zel::ZelStyleDefaultValueProvider::providerWithIdentifier(identifier, afterRunning,
                                                                     std::move(block));
}

inline Provider
addProvider(std::string_view identifier,
            const std::optional<std::vector<std::string>>& afterRunning = std::nullopt,
            zel::ZelStyleDefaultValueProvider::ProviderBlock block = nullptr) {
    auto provider = makeProvider(identifier, afterRunning, std::move(block));
    zel::ZelStyle::addDefaultValueProvider(provider);
    return provider;
}

} // namespace zeltest
