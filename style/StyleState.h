// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/Guarded.h"
#include "platform/locks/RecursiveLock.h"
#include "platform/objects/AtomicWeakReference.h"
#include "platform/objects/WeakTable.h"
#include "platform/text/Identifier.h"
#include "style/OwnValues.h"

#include <ZelStyleKit/ZelStyle.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

/// What an owner has asked for of a style: an observer to call, or, where the owner is a child
/// style that follows its parent, the changes that compute it.
struct UpdateFollower {
    std::shared_ptr<const ZelStyle::UpdateObserver> observer;
    std::shared_ptr<const ZelStyle::InheritedChanges> inherited;
};

/// Owner to its one follower, in the order in which owners came.
using UpdateFollowers = WeakTable<UpdateFollower, LockRank::UpdateFollowers>;

/// A style's fields, but for the merged values, which reads want without a detour.
struct StyleState {
    std::atomic<std::uint64_t> counter{0}; ///< accepted updates of this style alone
    AtomicWeakReference<ZelStyleDomain> domain;
    AtomicWeakReference<ZelStyleScheme> scheme;
    AtomicWeakReference<ZelStyle> parentStyle;
    AtomicIdentifier identifier;

    RecursiveLock updateLock{LockRank::StyleUpdate};     ///< the style's own lock
    Guarded<std::shared_ptr<UpdateFollowers>> followers; ///< by updateLock

    RecursiveLock valuesLock{LockRank::StyleValues};
    Guarded<OwnValues> own; ///< by valuesLock, as the merged values are
};

} // namespace v1
} // namespace zel
