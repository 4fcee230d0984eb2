// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/PrivateLock.h"
#include "style/LookupChanges.h"
#include "style/StylingLock.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace zel::inline v1 {
namespace {

constexpr std::string_view resetIdentifier = "_reset";

/// The domains of the process, oldest first; the only strong references to them that the library
/// keeps.
class DomainRegistry {
public:
    // A domain is made outside the lock, since it runs its initialiser; where two threads do so at
    // the same time, the second one's is dropped unseen.
    std::shared_ptr<ZelStyleDomain> domain(std::string_view identifier) {
        if (auto present = find(identifier)) {
            return present;
        }
        auto made = alloc<ZelStyleDomain>()->initWithDomainIdentifier(identifier);
        const PrivateGuard guard(lock_);
        const auto found = std::ranges::find(domains_, identifier, &Registered::identifier);
        if (found != domains_.end()) {
            return found->domain;
        }
        domains_.push_back({std::string(identifier), made, next_++});
        lookupChanges.increment();
        return made;
    }

    /// Removes the domains that there are now. One that nobody else holds ends during its removal
    /// and may call handlers; what they make meanwhile stays.
    void reset() {
        const StylingLock lock;
        const std::uint64_t end = next_.load();
        while (takeOldestBefore(end)) {
        }
    }

private:
    struct Registered {
        std::string identifier;
        std::shared_ptr<ZelStyleDomain> domain;
        std::uint64_t number;
    };

    std::shared_ptr<ZelStyleDomain> find(std::string_view identifier) {
        const PrivateGuard guard(lock_);
        const auto found = std::ranges::find(domains_, identifier, &Registered::identifier);
        return found == domains_.end() ? nullptr : found->domain;
    }
    std::shared_ptr<ZelStyleDomain> takeOldestBefore(std::uint64_t end) {
        const PrivateGuard guard(lock_);
        if (domains_.empty() || domains_.front().number >= end) {
            return nullptr;
        }
        auto taken = std::move(domains_.front().domain);
        domains_.erase(domains_.begin());
        lookupChanges.increment();
        return taken;
    }

    PrivateLock lock_;
    std::vector<Registered> domains_ ZEL_GUARDED_BY(lock_);
    std::atomic<std::uint64_t> next_{0};
};

DomainRegistry& domainRegistry() {
    static auto* const made = new DomainRegistry; // never destroyed: it lives for the process
    return *made;
}

/// A main style, filled for a scheme of the default domain; not added to it.
std::shared_ptr<ZelStyle> mainStyleFor(const std::shared_ptr<ZelStyleScheme>& scheme) {
    return alloc<ZelStyle>()->initWithIdentifier(ZelStyleIdentifierMain, scheme);
}

/// The light one is in two schemes, the light and the default one.
void addMainStyles(ZelStyleDomain& domain) {
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
    const std::string_view wanted = identifier.value_or(ZelStyleDomainIdentifierDefault);
    if (wanted == resetIdentifier) {
        domainRegistry().reset();
    }
    return domainRegistry().domain(wanted);
}

std::shared_ptr<ZelStyleDomain>
ZelStyleDomain::domainForStyleable(const std::shared_ptr<NSObject>& styleable) {
    const ZelStyleable* conforming = styleable ? styleable->asZelStyleable() : nullptr;
    requireNoPrivateLock();
    return conforming ? domainForIdentifier(conforming->domainIdentifierOfZelStyleable()) : nullptr;
}

void ZelStyleDomain::setupStyles() {
    static bool done = false; // by the lock; set first, since handlers may call this again
    const StylingLock lock;
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

} // namespace zel::inline v1
