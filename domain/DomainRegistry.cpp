// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/DeliveryGate.h"
#include "platform/locks/Guarded.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <new>

namespace zel {
inline namespace v1 {
namespace {

constexpr std::string_view resetIdentifier = "_reset";

/// The domains of the process; the only strong references to them that the library keeps.
class DomainRegistry {
public:
    std::shared_ptr<ZelStyleDomain> domain(std::string_view identifier) {
        if (identifier == resetIdentifier) {
            const DeliveryGate gate; // handlers may be called: before the lock, as everywhere
            const RecursiveGuard guard(lock_);
            removeAll();
            return findOrMake(identifier);
        }
        const RecursiveGuard guard(lock_);
        return findOrMake(identifier);
    }

private:
    struct Registered {
        std::shared_ptr<ZelStyleDomain> domain;
        std::uint64_t order; ///< of creation
    };

    std::shared_ptr<ZelStyleDomain> findOrMake(std::string_view identifier) {
        const auto found = domains().find(identifier);
        if (found != domains().end()) {
            return found->second.domain;
        }
        // Made while the lock is held, so that nobody else can make the same one.
        auto domain = alloc<ZelStyleDomain>()->initWithDomainIdentifier(identifier);
        domains().emplace(identifier, Registered{domain, next_++});
        return domain;
    }

    /// Removes the domains that there are now, oldest first. One that nobody else holds ends during
    /// its removal and may call handlers; what they make meanwhile stays.
    void removeAll() {
        const std::uint64_t end = next_;
        while (!domains().empty()) {
            const auto oldest = std::ranges::min_element(
                domains(), {}, [](const auto& each) { return each.second.order; });
            if (oldest->second.order >= end) {
                return;
            }
            const auto removed = domains().extract(oldest);
        }
    }

    using Domains = std::map<std::string, Registered, std::less<>>;
    [[nodiscard]] Domains& domains() noexcept { return domains_.with(lock_); }

    RecursiveLock lock_{LockRank::DomainRegistry}; // the class's lock
    Guarded<Domains> domains_;
    std::uint64_t next_ = 0;
};

DomainRegistry& registry() {
    static auto* const made = new DomainRegistry; // never destroyed: it lives for the process
    return *made;
}

/// A main style of the default domain, filled for a scheme and added to it.
std::shared_ptr<ZelStyle> mainStyleFor(const std::shared_ptr<ZelStyleScheme>& scheme) {
    return alloc<ZelStyle>()->initWithIdentifier(ZelStyleIdentifierMain, scheme);
}

/// The light one stands in two schemes, the light and the default one. Hardly ever called: told to
/// be small, it takes a kilobyte less of a file that is compiled for speed.
[[gnu::cold]] void addMainStyles(ZelStyleDomain& domain) {
    const auto light = mainStyleFor(domain.lightScheme());
    domain.defaultScheme()->addStyle(light);
    domain.lightScheme()->addStyle(light);
    domain.darkScheme()->addStyle(mainStyleFor(domain.darkScheme()));
}

} // namespace

std::shared_ptr<ZelStyleDomain> ZelStyleDomain::defaultDomain() {
    return domainForIdentifier(ZelStyleDomainIdentifierDefault);
}

// Deliberate: "_reset" empties the registry and is then an identifier like any other.
std::shared_ptr<ZelStyleDomain>
ZelStyleDomain::domainForIdentifier(std::optional<std::string_view> identifier) {
    return registry().domain(identifier.value_or(ZelStyleDomainIdentifierDefault));
}

std::shared_ptr<ZelStyleDomain>
ZelStyleDomain::domainForStyleable(const std::shared_ptr<NSObject>& styleable) {
    const ZelStyleable* conforming = styleable ? styleable->asZelStyleable() : nullptr;
    return conforming ? domainForIdentifier(conforming->domainIdentifierOfZelStyleable()) : nullptr;
}

void ZelStyleDomain::setupStyles() {
    static bool done = false; // guarded by the gate; set first, since handlers may call this again
    const DeliveryGate gate;
    if (std::exchange(done, true)) {
        return;
    }
    const auto domain = defaultDomain();
    bool hasStyles = false;
    try {
        addMainStyles(*domain);
        hasStyles = true;
        domain->setSchemeFollowsSystem(true);
    } catch (const std::bad_alloc&) { // a handler's as well, or it doesn't follow yet
        done = hasStyles && domain->schemeFollowsSystem();
        throw;
    } catch (...) { // a handler's, when all is done, or a provider's before
        done = hasStyles;
        throw;
    }
}

} // namespace v1
} // namespace zel
