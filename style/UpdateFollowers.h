// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "platform/objects/WeaklyKeyed.h"

#include <ZelStyleKit/ZelStyle.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

namespace zel::inline v1 {

/// What an owner has asked for of a style: an observer to call, or, where the owner is a child
/// style that follows its parent, the changes that compute it.
struct UpdateFollower {
    std::shared_ptr<const ZelStyle::UpdateObserver> observer;
    std::shared_ptr<const ZelStyle::InheritedChanges> inherited;
};

/// The followers of one style, one for each owner, in the order in which owners were added. A
/// follower goes, with what it captured, when its owner ends. Made by `std::make_shared`.
/// Owns: the followers. Refers to: the owners.
/// Threads: any, under a private lock of its own; an update walks them behind the styling lock.
class UpdateFollowers final : public WeaklyKeyed {
public:
    /// Stores an owner's follower; answers the one that it replaces, to be destroyed by the caller.
    UpdateFollower set(const std::shared_ptr<NSObject>& owner, UpdateFollower follower);
    /// Removes an owner's follower. False, with nothing removed, where an update on another thread
    /// walks them.
    [[nodiscard]] bool remove(const NSObject& owner);

    /// A follower whose owner lives, and where the walk goes on behind it.
    struct Step {
        std::uint64_t next;
        std::shared_ptr<NSObject> owner;
        UpdateFollower follower;
    };
    /// The first follower from that place on; a walk begins at 0.
    [[nodiscard]] std::optional<Step> next(std::uint64_t from) const;

    /// How often a follower was set or removed; an owner's end doesn't count.
    [[nodiscard]] std::uint64_t mutations() const;

    /// Begins and ends a walk; the styling lock is held.
    void beginWalk();
    void endWalk() noexcept;

    void keyEnded(const NSObject& key) noexcept override;

private:
    struct Entry {
        std::weak_ptr<NSObject> owner;
        UpdateFollower follower;
    };
    using Entries = std::map<std::uint64_t, Entry>;
    Entries::node_type take(const NSObject& owner) ZEL_REQUIRES(lock_);

    mutable PrivateLock lock_;
    Entries entries_ ZEL_GUARDED_BY(lock_); // by order of insertion
    std::unordered_map<const NSObject*, std::uint64_t> orders_ ZEL_GUARDED_BY(lock_);
    std::uint64_t nextOrder_ ZEL_GUARDED_BY(lock_) = 0;
    std::uint64_t mutations_ ZEL_GUARDED_BY(lock_) = 0;
    unsigned walks_ ZEL_GUARDED_BY(lock_) = 0;
};

} // namespace zel::inline v1
