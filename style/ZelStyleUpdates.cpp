// SPDX-License-Identifier: Apache-2.0
#include "platform/locks/DeliveryGate.h"
#include "style/StyleState.h"
#include "style/UpperFloor.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <vector>

namespace zel {
inline namespace v1 {
namespace {

/// A style's followers, none where it has had none; its lock is held.
std::shared_ptr<UpdateFollowers>& followersOf(const ZelStyle& style) {
    StyleState& state = ZelStyleInternals::state(style);
    return state.followers.with(state.updateLock);
}

/// One style's update under way: its lock is held; once it is accepted, its followers are called.
class RunningUpdate {
public:
    void start(std::shared_ptr<ZelStyle> updated) {
        style = std::move(updated);
        guard_ = RecursiveGuard(ZelStyleInternals::state(*style).updateLock);
        begun_ = false;
    }
    void stop() noexcept {
        walk_.reset();
        guard_ = RecursiveGuard();
        style.reset();
    }

    /// The next follower to call; the first request moves the counter and drops the merged values.
    UpdateFollowers::Entry* nextFollower() {
        if (!begun_) {
            begun_ = true;
            ZelStyleInternals::incrementSeed(*style);
            if (const auto& followers = followersOf(*style)) {
                walk_.emplace(followers);
                mutations_ = followers->mutations();
            }
        }
        return walk_ ? walk_->next() : nullptr;
    }
    [[nodiscard]] const std::shared_ptr<NSObject>& owner() const noexcept { return walk_->owner(); }
    void endFollowers() noexcept { walk_.reset(); }
    void requireUnchangedFollowers() const {
        if (followersOf(*style)->mutations() != mutations_) {
            throw ZelEnumerationMutation("update observers changed while an update called them");
        }
    }

    std::shared_ptr<ZelStyle> style;

private:
    RecursiveGuard guard_;
    std::optional<UpdateFollowers::Walk> walk_;
    std::uint64_t mutations_ = 0;
    bool begun_ = false;
};

/// The updates under way in the process, a child's above its parent's; guarded by the gate. Kept,
/// so that an update like an earlier one allocates nothing.
class UpdateStack {
public:
    static UpdateStack& shared() {
        static auto* const stack =
            new UpdateStack; // never destroyed: styles may be updated at exit
        return *stack;
    }
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }
    [[nodiscard]] RunningUpdate& top() const noexcept { return *updates_[depth_ - 1]; }

    void push(std::shared_ptr<ZelStyle> style) {
        if (depth_ == updates_.size()) {
            updates_.push_back(std::make_unique<RunningUpdate>());
        }
        updates_[depth_]->start(std::move(style));
        ++depth_;
    }
    /// Letting an owner or a style go may end it, and so run other updates: above this one, still.
    void pop() noexcept {
        top().stop();
        --depth_;
    }

private:
    std::vector<std::unique_ptr<RunningUpdate>> updates_;
    std::size_t depth_ = 0;
};

/// Runs an inherited style's changes: with the parent that it has now, which may be nil.
void computeChild(const ZelStyle::InheritedChanges& changes,
                  const std::shared_ptr<ZelStyle>& child) {
    changes(child->parentStyle(), child);
}

/// An update, and those of the children that follow the style, depth first: a style's followers
/// before its domain. A loop, so that no chain of children is too long for the stack.
class UpdateRun {
public:
    explicit UpdateRun(std::shared_ptr<ZelStyle> style) : below_(stack_.depth()) {
        stack_.push(std::move(style));
    }
    UpdateRun(const UpdateRun&) = delete;
    UpdateRun& operator=(const UpdateRun&) = delete;
    ~UpdateRun() { // after an exception: the innermost lock goes first
        while (stack_.depth() > below_) {
            stack_.pop();
        }
    }

    [[nodiscard]] const std::shared_ptr<ZelStyle>& style() const { return stack_.top().style; }

    void accept() {
        while (stack_.depth() > below_) {
            step();
        }
    }

private:
    void step() {
        RunningUpdate& update = stack_.top();
        if (auto* entry = update.nextFollower()) {
            call(update, entry->payload);
            return;
        }
        update.endFollowers();
        deliverStyleUpdate(update.style->domain(), update.style);
        stack_.pop();
        if (stack_.depth() > below_) {
            stack_.top().requireUnchangedFollowers();
        }
    }

    void call(const RunningUpdate& update, const UpdateFollower& follower) {
        if (const auto observer = follower.observer) {
            (*observer)(update.owner(), update.style, false);
            update.requireUnchangedFollowers();
        } else if (const auto inherited = follower.inherited) {
            const auto child = std::static_pointer_cast<ZelStyle>(update.owner());
            stack_.push(child);
            computeChild(*inherited, child);
        }
    }

    UpdateStack& stack_ = UpdateStack::shared();
    const std::size_t below_;
};

/// Stores an owner's follower and hands out the one that it replaces; the style's lock is held.
UpdateFollower follow(const ZelStyle& style, const std::shared_ptr<NSObject>& owner,
                      UpdateFollower follower) {
    auto& followers = followersOf(style);
    if (!followers) {
        followers = std::make_shared<UpdateFollowers>();
    }
    const RecursiveGuard guard(followers->lock);
    if (auto* entry = followers->find(*owner)) {
        followers->noteMutation();
        return std::exchange(entry->payload, std::move(follower));
    }
    followers->insert(owner, std::move(follower));
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
    const Changes kept = changes; // running it may clear the caller's
    UpdateRun run(self());
    if (!kept || kept(run.style())) {
        run.accept();
    }
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
        replaced = follow(*this, child, {nullptr, shared});
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
    replaced = follow(*this, owner, {shared, nullptr});
    if (initialCall) {
        (*shared)(owner, style, true);
    }
}

void ZelStyle::removeStyleUpdateObserverWithOwner(const std::shared_ptr<NSObject>& owner) {
    UpdateFollower removed; // ends after the lock is released
    const RecursiveGuard guard(state_->updateLock);
    const auto& followers = followersOf(*this);
    if (!owner || !followers) {
        return;
    }
    const RecursiveGuard tableGuard(followers->lock);
    if (auto* entry = followers->find(*owner)) {
        removed = followers->remove(*entry);
    }
}

} // namespace v1
} // namespace zel
