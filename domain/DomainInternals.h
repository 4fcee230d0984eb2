// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenerTable.h"
#include "domain/StyleResolution.h"
#include "platform/locks/PrivateLock.h"

#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <typeindex>

namespace zel::inline v1 {

/// A domain's fields. Two threads must not switch schemes, or following, at once.
struct ZelStyleDomain::State {
    using Schemes = std::map<std::string, std::shared_ptr<ZelStyleScheme>, std::less<>>;

    PrivateLock lock;
    Schemes schemesByIdentifier ZEL_GUARDED_BY(lock);
    std::shared_ptr<ZelStyle> mainStyle ZEL_GUARDED_BY(lock); ///< cache; nil: not looked up
    std::shared_ptr<ZelStyleScheme> currentScheme ZEL_GUARDED_BY(lock);
    std::optional<std::string> domainIdentifier ZEL_GUARDED_BY(lock);
    std::optional<std::type_index> styleClass ZEL_GUARDED_BY(lock);
    std::atomic<bool> schemeFollowsSystem{false};

    ListenerTable owners;  ///< of change handlers
    ListenerTable objects; ///< change handler objects

    /// The scheme of that identifier, where there is one.
    std::shared_ptr<ZelStyleScheme> findScheme(std::string_view identifier);
};

/// What a domain keeps to itself, for the library's other sources: its fields and the internal
/// operations.
struct DomainInternals {
    using State = ZelStyleDomain::State;
    static State& state(const ZelStyleDomain& domain) noexcept { return *domain.state_; }

    /// `_notifyStyleFor:`. The style that applies to a styleable, else the main style.
    static std::shared_ptr<ZelStyle> _notifyStyleFor(ZelStyleDomain& domain,
                                                     const std::shared_ptr<NSObject>& object);
    /// `_updateFromSystemAppearance:`
    static void _updateFromSystemAppearance(ZelStyleDomain& domain);

    /// Removes an object from a table. Waits for another thread's walk that may be calling it;
    /// not where the object is ending, which no walk holds.
    static void unregister(ListenerTable& table, const NSObject& object);
};

} // namespace zel::inline v1
