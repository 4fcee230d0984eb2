// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The recursive locks of the library, outermost first: inside one of them a thread takes only what
/// stands further down. What `lockRules` says of each adds to that.
enum class LockRank : std::uint8_t {
    DeliveryGate,
    DomainRegistry,
    StyleUpdate,
    UpdateFollowers,
    HandlerTable,
    Schemes,
    SchemeStyles,
    StyleValues,
    Observations,
    Notifications,
    ModeList,
};

/// Two kinds of locks. One is held while others' code runs, which may come back with any operation
/// and so take any other lock: such locks are taken inside each other only by the thread that is
/// behind the delivery gate, in either order then, since no second thread has two of them. The
/// other kind is held for the library's own work alone, and its order is fixed.
enum class LockUse : std::uint8_t {
    Gate,      ///< lets one thread at a time hold several locks of the next kind
    CallsBack, ///< held while others' code runs
    Private,   ///< held for a piece of the library's own work
    Nested,    ///< private, and several at a time, in an order among each other
};

struct LockRule {
    LockRank rank;
    LockUse use;
    std::string_view name;
    std::string_view reason;
    /// A lock that calls back may be taken outside the gate inside one of this rank, to which it
    /// belongs: whoever has taken it and goes on to take more has taken that one before.
    std::optional<LockRank> belongsTo = std::nullopt;
};

/// The whole order, one row for each rank.
inline constexpr std::array lockRules{
    LockRule{LockRank::DeliveryGate, LockUse::Gate, "delivery gate",
             "whatever calls back with another lock held takes the gate before that lock"},
    LockRule{LockRank::DomainRegistry, LockUse::CallsBack, "registry of domains",
             "held while a domain is made, and for a reset while domains end and call handlers"},
    LockRule{LockRank::StyleUpdate, LockUse::CallsBack, "update of a style",
             "held for a whole update, its delivery included; a parent's before its child's"},
    LockRule{LockRank::UpdateFollowers, LockUse::CallsBack, "followers of a style",
             "walked by the style's update, which calls them", LockRank::StyleUpdate},
    LockRule{LockRank::HandlerTable, LockUse::CallsBack, "table of handlers",
             "walked by a notification, which calls them"},
    LockRule{LockRank::Schemes, LockUse::Private, "schemes of a domain",
             "handlers resolve styles with their table locked"},
    LockRule{LockRank::SchemeStyles, LockUse::Private, "styles of a scheme",
             "a domain looks into its schemes with its own lock held"},
    LockRule{LockRank::StyleValues, LockUse::Nested, "values of a style",
             "a child's values are merged from its parent's: the child's lock comes first"},
    LockRule{LockRank::Observations, LockUse::Private, "table of key-value observations",
             "observers are called without it"},
    LockRule{LockRank::Notifications, LockUse::Private, "table of a notification centre",
             "callbacks are called without it"},
    LockRule{LockRank::ModeList, LockUse::Private, "list of modes",
             "modes are applied without it; a store that is read under it uses nothing that locks"},
};

[[nodiscard]] constexpr const LockRule& ruleOf(LockRank rank) noexcept {
    return lockRules[static_cast<std::size_t>(rank)];
}

// Inside every lock of these stand plain mutexes, held for a few words of memory, within which no
// recursive lock is taken: the links of known trees, in it those of weak-keyed tables, in either
// the pool of bindings; and, each by itself, what guards the fields of one object.

} // namespace v1
} // namespace zel
