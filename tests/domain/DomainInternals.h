// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/DomainInternals.h"
#include "tests/support/FreeLock.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>

namespace zeltest {

using zel::DomainInternals;

inline std::size_t ownerCount(zel::ZelStyleDomain& domain) {
    return DomainInternals::state(domain).owners.size();
}
inline std::size_t objectCount(zel::ZelStyleDomain& domain) {
    return DomainInternals::state(domain).objects.size();
}
/// What walks that are over have left in the room for their lists.
inline std::size_t leftByWalks(zel::ZelStyleDomain& domain) {
    auto& state = DomainInternals::state(domain);
    return state.owners.listed.size() + state.objects.listed.size();
}
inline std::size_t schemeCount(zel::ZelStyleDomain& domain) {
    auto& state = DomainInternals::state(domain);
    const zel::PrivateGuard guard(state.lock);
    return state.schemesByIdentifier.size();
}
inline bool hasScheme(zel::ZelStyleDomain& domain, std::string_view identifier) {
    return DomainInternals::state(domain).findScheme(identifier) != nullptr;
}

} // namespace zeltest
