// SPDX-License-Identifier: Apache-2.0
#include "platform/DeliveryGate.h"
#include "style/StyleState.h"
#include "style/UpperFloor.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <vector>

namespace zel {
inline namespace v1 {
namespace {

/// One style's accepted update under way: its lock is held, its followers are being called.
struct RunningUpdate {
    explicit RunningUpdate(std::shared_ptr<ZelStyle> updated)
        : style(std::move(updated)), guard(ZelStyleInternals::state(*style).updateLock) {}

    void beginFollowers() {
        if (const auto& followers = ZelStyleInternals::state(*style).followers) {
            walk.emplace(followers);
            mutations = followers->mutations();
        }
    }
    [[nodiscard]] UpdateFollowers::Entry* nextFollower() { return walk ? walk->next() : nullptr; }
    void requireUnchangedFollowers() const {
        if (ZelStyleInternals::state(*style).followers->mutations() != mutations) {
            throw ZelEnumerationMutation("update observers changed while an update called them");
        }
    }

    std::shared_ptr<ZelStyle> style;
    RecursiveGuard guard;
    std::optional<UpdateFollowers::Walk> walk;
    std::uint64_t mutations = 0;
    bool begun = false; ///< whether the counter was moved and the followers are being called
};

/// Runs an inherited style's changes: with the parent that it has now, which may be nil.
void computeChild(const ZelStyle::InheritedChanges& changes,
                  const std::shared_ptr<ZelStyle>& child) {
    changes(child->parentStyle(), child);
}

/// Carries an accepted update, and those of the children that follow it, depth first: a style's
/// followers before its domain. A loop, so that no chain of children is too long for the stack.
class UpdateRun {
public:
    void accept(std::unique_ptr<RunningUpdate> update) {
        updates_.push_back(std::move(update));
        while (!updates_.empty()) {
            step();
        }
    }

    ~UpdateRun() { // after an exception: the innermost lock goes first
        while (!updates_.empty()) {
            updates_.pop_back();
        }
    }

private:
    void begin(RunningUpdate& update) {
        ZelStyleInternals::incrementSeed(*update.style);
        update.beginFollowers();
        update.begun = true;
    }

    void step() {
        RunningUpdate& update = *updates_.back();
        if (!update.begun) {
            begin(update);
        }
        if (auto* entry = update.nextFollower()) {
            call(update, entry->payload);
            return;
        }
        update.walk.reset();
        deliverStyleUpdate(update.style->domain(), update.style);
        updates_.pop_back();
        if (!updates_.empty()) {
            updates_.back()->requireUnchangedFollowers();
        }
    }

    void call(RunningUpdate& update, const UpdateFollower& follower) {
        if (const auto observer = follower.observer) {
            (*observer)(update.walk->owner(), update.style, false);
            update.requireUnchangedFollowers();
        } else if (const auto inherited = follower.inherited) {
            auto child = std::static_pointer_cast<ZelStyle>(update.walk->owner());
            auto next = std::make_unique<RunningUpdate>(child);
            computeChild(*inherited, child);
            updates_.push_back(std::move(next));
        }
    }

    std::vector<std::unique_ptr<RunningUpdate>> updates_; // a child's above its parent's
};

/// The style's followers, made where it has none; its lock is held.
UpdateFollowers& followersOf(StyleState& state) {
    if (!state.followers) {
        state.followers = std::make_shared<UpdateFollowers>();
    }
    return *state.followers;
}

/// Stores an owner's follower and hands out the one that it replaces.
UpdateFollower follow(StyleState& state, const std::shared_ptr<NSObject>& owner,
                      UpdateFollower follower) {
    UpdateFollowers& followers = followersOf(state);
    const RecursiveGuard guard(followers.lock);
    if (auto* entry = followers.find(*owner)) {
        followers.noteMutation();
        return std::exchange(entry->payload, std::move(follower));
    }
    followers.insert(owner, std::move(follower));
    return {};
}

} // namespace

void ZelStyle::_incrementSeed() {
    MergedValues::Dropped dropped; // ends after the lock is released
    state_->counter.fetch_add(1, std::memory_order_acq_rel);
    const RecursiveGuard guard(state_->valuesLock);
    if (MergedValues* merged = merged_.load(std::memory_order_acquire)) {
        dropped = merged->drop();
    }
}

void ZelStyle::updateStyleWithChanges(const Changes& changes) {
    const DeliveryGate gate;
    auto update = std::make_unique<RunningUpdate>(self());
    const Changes kept = changes; // running it may clear the caller's
    if (kept && !kept(update->style)) {
        return;
    }
    UpdateRun().accept(std::move(update));
}

std::shared_ptr<ZelStyle>
ZelStyle::inheritedStyleWithChanges(InheritedChanges changes,
                                    std::optional<std::string_view> identifier,
                                    const std::shared_ptr<ZelStyleScheme>& scheme) {
    const std::shared_ptr<ZelStyleScheme> addedTo = scheme; // the changes may let go of both
    const auto parent = self();
    if (addedTo) {
        if (auto present = addedTo->styleForIdentifier(identifier)) {
            return present;
        }
    }
    auto child = alloc<ZelStyle>()->initWithIdentifier(
        identifier, addedTo ? addedTo : currentSchemeOf(domain()), parent);
    if (changes) {
        const DeliveryGate gate;
        const auto shared = std::make_shared<const InheritedChanges>(std::move(changes));
        UpdateFollower replaced;
        const RecursiveGuard guard(state_->updateLock);
        replaced = follow(*state_, child, {nullptr, shared});
        const RecursiveGuard childGuard(child->state_->updateLock);
        computeChild(*shared, child); // an update that is not accepted: it only writes
    }
    if (addedTo) {
        addedTo->addStyle(child);
    }
    return child;
}

void ZelStyle::addStyleUpdateObserver(UpdateObserver observer,
                                      const std::shared_ptr<NSObject>& withOwner,
                                      bool initialCall) {
    if (!observer || !withOwner) {
        return;
    }
    const DeliveryGate gate;
    const auto style = self(); // the call may let go of the style and of its owner
    const std::shared_ptr<NSObject> owner = withOwner;
    const auto shared = std::make_shared<const UpdateObserver>(std::move(observer));
    UpdateFollower replaced; // ends after the lock is released
    const RecursiveGuard guard(state_->updateLock);
    replaced = follow(*state_, owner, {shared, nullptr});
    if (initialCall) {
        (*shared)(owner, style, true);
    }
}

void ZelStyle::removeStyleUpdateObserverWithOwner(const std::shared_ptr<NSObject>& owner) {
    UpdateFollower removed; // ends after the lock is released
    const RecursiveGuard guard(state_->updateLock);
    if (!owner || !state_->followers) {
        return;
    }
    const RecursiveGuard tableGuard(state_->followers->lock);
    if (auto* entry = state_->followers->find(*owner)) {
        removed = state_->followers->remove(*entry);
    }
}

} // namespace v1
} // namespace zel
