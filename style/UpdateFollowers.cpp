// SPDX-License-Identifier: Apache-2.0
#include "style/UpdateFollowers.h"

#include "style/StylingLock.h"

#include <utility>

namespace zel::inline v1 {

UpdateFollower UpdateFollowers::set(const std::shared_ptr<NSObject>& owner,
                                    UpdateFollower follower) {
    watch(*owner);
    const PrivateGuard guard(lock_);
    const auto [found, isNew] = orders_.try_emplace(owner.get(), nextOrder_);
    if (!isNew) {
        ++mutations_;
        return std::exchange(entries_.at(found->second).follower, std::move(follower));
    }
    try {
        entries_.emplace(nextOrder_, Entry{owner, std::move(follower)});
    } catch (...) { // no memory
        orders_.erase(found);
        throw;
    }
    ++nextOrder_;
    ++mutations_;
    return {};
}

bool UpdateFollowers::remove(const NSObject& owner) {
    const bool mayRemove = StylingLock::isHeld();
    Entries::node_type removed; // ends after the guard
    const PrivateGuard guard(lock_);
    if (walks_ > 0 && !mayRemove) {
        return false;
    }
    removed = take(owner);
    mutations_ += removed.empty() ? 0 : 1;
    return true;
}

std::optional<UpdateFollowers::Step> UpdateFollowers::next(std::uint64_t from) const {
    const PrivateGuard guard(lock_);
    for (auto each = entries_.lower_bound(from); each != entries_.end(); ++each) {
        if (auto owner = each->second.owner.lock()) {
            return Step{each->first + 1, std::move(owner), each->second.follower};
        }
    }
    return std::nullopt;
}

std::uint64_t UpdateFollowers::mutations() const {
    const PrivateGuard guard(lock_);
    return mutations_;
}

void UpdateFollowers::beginWalk() {
    const PrivateGuard guard(lock_);
    ++walks_;
}

void UpdateFollowers::endWalk() noexcept {
    const PrivateGuard guard(lock_);
    --walks_;
}

void UpdateFollowers::keyEnded(const NSObject& key) noexcept {
    Entries::node_type removed; // ends after the guard
    const PrivateGuard guard(lock_);
    removed = take(key);
}

UpdateFollowers::Entries::node_type UpdateFollowers::take(const NSObject& owner) {
    const auto found = orders_.find(&owner);
    if (found == orders_.end()) {
        return {};
    }
    auto removed = entries_.extract(found->second);
    orders_.erase(found);
    return removed;
}

} // namespace zel::inline v1
