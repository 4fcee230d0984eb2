// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/DomainState.h"
#include "tests/support/FreeLock.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>

namespace zel {
inline namespace v1 {

/// The tests' way to what a domain keeps to itself.
struct ZelStyleDomainInternals {
    static std::shared_ptr<ZelStyle> notifyStyleFor(ZelStyleDomain& domain,
                                                    const std::shared_ptr<NSObject>& object) {
        return domain._notifyStyleFor(object);
    }
    static void updateFromSystemAppearance(ZelStyleDomain& domain) {
        domain._updateFromSystemAppearance(nullptr);
    }
    static void applyStyle(ZelStyleDomain& domain, const std::shared_ptr<ZelStyle>& style,
                           const std::shared_ptr<NSObject>& onChangeHandler,
                           const ZelStyleDelivery& delivery) {
        domain._applyStyle(style, onChangeHandler, delivery);
    }

    static bool ownersAreFree(ZelStyleDomain& domain) {
        return zeltest::isFree(domain.state_->changeHandlersByOwner->lock);
    }
    static bool objectsAreFree(ZelStyleDomain& domain) {
        return zeltest::isFree(domain.state_->changeHandlers->lock);
    }
    static bool schemesAreFree(ZelStyleDomain& domain) {
        return zeltest::isFree(domain.state_->schemesLock);
    }

    static std::size_t owners(ZelStyleDomain& domain) {
        return domain.state_->changeHandlersByOwner->size();
    }
    static std::size_t objects(ZelStyleDomain& domain) {
        return domain.state_->changeHandlers->size();
    }
    /// Listeners that walks which are over have left in the room for those that they found.
    static std::size_t leftByWalks(ZelStyleDomain& domain) {
        return domain.state_->changeHandlersByOwner->scratch.size() +
               domain.state_->changeHandlers->scratch.size();
    }
    static std::size_t schemes(ZelStyleDomain& domain) {
        const RecursiveGuard guard(domain.state_->schemesLock);
        return domain.state_->schemesByIdentifier().size();
    }
    static bool hasScheme(ZelStyleDomain& domain, std::string_view identifier) {
        const RecursiveGuard guard(domain.state_->schemesLock);
        return domain.state_->schemesByIdentifier().contains(identifier);
    }
};

} // namespace v1
} // namespace zel
