// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ChangeHandlers.h"
#include "domain/ListenersByStyle.h"
#include "platform/locks/Guarded.h"
#include "platform/locks/RecursiveLock.h"

#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <typeindex>

namespace zel {
inline namespace v1 {

/// A domain's fields.
struct ZelStyleDomain::State {
    using Schemes = std::map<std::string, std::shared_ptr<ZelStyleScheme>, std::less<>>;
    RecursiveLock schemesLock{LockRank::Schemes};
    Guarded<Schemes> guardedSchemes;
    [[nodiscard]] Schemes& schemesByIdentifier() noexcept {
        return guardedSchemes.with(schemesLock);
    }

    const std::shared_ptr<ChangeHandlerTable> changeHandlersByOwner =
        std::make_shared<ChangeHandlerTable>();
    std::uint64_t handlerSerial = 0; ///< registrations so far; guarded by the table's lock
    const std::shared_ptr<ChangeHandlerObjects> changeHandlers =
        std::make_shared<ChangeHandlerObjects>();
    ListenersByStyle<ChangeHandlers> ownersByStyle; ///< guarded by their tables' locks
    ListenersByStyle<NoPayload> objectsByStyle;

    /// Guards single accesses to what follows; innermost. Switching itself isn't atomic.
    mutable std::mutex mutex;
    std::shared_ptr<ZelStyle> mainStyle; ///< cache; nil: not computed
    std::uint64_t mainStyleDrops = 0;    ///< so that a style looked up before a switch isn't kept
    std::shared_ptr<ZelStyleScheme> currentScheme;
    std::optional<std::string> domainIdentifier;
    std::optional<std::type_index> styleClass;
    std::atomic<bool> schemeFollowsSystem{false};
};

} // namespace v1
} // namespace zel
