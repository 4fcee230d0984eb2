// SPDX-License-Identifier: Apache-2.0
#include "style/StylingLock.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <utility>
#include <vector>

namespace zel::inline v1 {
namespace {

/// One style's accepted update under way.
struct Frame {
    std::shared_ptr<ZelStyle> style;
    std::shared_ptr<UpdateFollowers> followers; ///< nil where it has none
    std::uint64_t nextFollower = 0;
    std::uint64_t mutations = 0; ///< of the followers when the walk over them began
};

/// The updates under way in the process, a child's above its parent's; guarded by the styling lock.
/// Kept, so that an update like an earlier one allocates nothing.
std::vector<Frame>& frames() {
    static auto* const made = new std::vector<Frame>; // never destroyed: used at exit
    return *made;
}

std::shared_ptr<UpdateFollowers> followersOf(const ZelStyle& style) {
    const PrivateGuard guard(stylesLock);
    return ZelStyleInternals::state(style).followers;
}

/// A new follower of a style, and its first call: another thread that removes it meanwhile waits.
class FirstCall {
public:
    FirstCall(const ZelStyle& style, const std::shared_ptr<NSObject>& owner,
              UpdateFollower follower)
        : followers_(followersOf(style)) {
        if (!followers_) { // behind the styling lock: nobody else makes them meanwhile
            followers_ = std::make_shared<UpdateFollowers>();
            const PrivateGuard guard(stylesLock);
            ZelStyleInternals::state(style).followers = followers_;
        }
        replaced_ = followers_->set(owner, std::move(follower));
        followers_->beginWalk();
    }
    FirstCall(const FirstCall&) = delete;
    FirstCall& operator=(const FirstCall&) = delete;
    ~FirstCall() { followers_->endWalk(); }

private:
    std::shared_ptr<UpdateFollowers> followers_;
    UpdateFollower replaced_; ///< ends after the call
};

/// Runs an inherited style's changes: with the parent that it has now, which may be nil.
void computeChild(const ZelStyle::InheritedChanges& changes,
                  const std::shared_ptr<ZelStyle>& child) {
    const auto parent = child->parentStyle();
    requireNoPrivateLock();
    changes(parent, child);
}

/// An accepted update and those of the children that follow the style, depth first: a style's
/// followers before its domain. A loop, so that no chain of children is too long for the stack.
class UpdateRun {
public:
    explicit UpdateRun(const std::shared_ptr<ZelStyle>& style) : below_(frames().size()) {
        push(style);
    }
    UpdateRun(const UpdateRun&) = delete;
    UpdateRun& operator=(const UpdateRun&) = delete;
    ~UpdateRun() { // after an exception: the innermost goes first
        while (frames().size() > below_) {
            pop();
        }
    }

    void run() {
        while (frames().size() > below_) {
            if (!callNextFollower()) {
                const std::shared_ptr<ZelStyle> style = frames().back().style;
                if (const auto domain = style->domain()) {
                    domain->notifyForStyleChangeOf(nullptr,
                                                   {.withEvent = ZelStyleChangeEventChanged,
                                                    .force = true,
                                                    .forStyleOnly = style});
                }
                pop();
                if (frames().size() > below_) {
                    requireUnchangedFollowers();
                }
            }
        }
    }

private:
    static void push(const std::shared_ptr<ZelStyle>& style) {
        Frame& frame = frames().emplace_back();
        frame.style = style;
        ZelStyleInternals::_incrementSeed(*style);
        if (auto followers = followersOf(*style)) {
            followers->beginWalk();
            frame.mutations = followers->mutations();
            frame.followers = std::move(followers);
        }
    }

    // What the frame held may end here, and so run other updates: above this one, still.
    static void pop() noexcept {
        const Frame ended = std::move(frames().back());
        frames().pop_back();
        if (ended.followers) {
            ended.followers->endWalk();
        }
    }

    /// False where the style has no more followers.
    static bool callNextFollower() {
        Frame& frame = frames().back(); // calling one may move it
        auto step = frame.followers ? frame.followers->next(frame.nextFollower) : std::nullopt;
        if (!step) {
            return false;
        }
        frame.nextFollower = step->next;
        if (const auto& inherited = step->follower.inherited) {
            const auto child = std::static_pointer_cast<ZelStyle>(step->owner);
            computeChild(*inherited, child);
            push(child);
        } else {
            const std::shared_ptr<ZelStyle> style = frame.style;
            requireNoPrivateLock();
            (*step->follower.observer)(step->owner, style, false);
            requireUnchangedFollowers();
        }
        return true;
    }

    static void requireUnchangedFollowers() {
        const Frame& frame = frames().back();
        if (frame.followers->mutations() != frame.mutations) {
            throw ZelEnumerationMutation("update observers changed while an update called them");
        }
    }

    const std::size_t below_;
};

} // namespace

void ZelStyle::updateStyleWithChanges(const Changes& changes) {
    const StylingLock lock;
    const auto style = std::static_pointer_cast<ZelStyle>(shared_from_this());
    const Changes kept = changes; // running it may clear the caller's
    requireNoPrivateLock();
    if (!kept || kept(style)) {
        UpdateRun(style).run();
    }
}

std::shared_ptr<ZelStyle>
ZelStyle::inheritedStyleWithChanges(InheritedChanges changes,
                                    std::optional<std::string_view> identifier,
                                    const std::shared_ptr<ZelStyleScheme>& scheme) {
    const std::shared_ptr<ZelStyleScheme> addedTo = scheme; // the changes may let go of both
    const auto parent = std::static_pointer_cast<ZelStyle>(shared_from_this());
    if (addedTo) {
        if (auto present = addedTo->styleForIdentifier(identifier)) {
            return present;
        }
    }
    const auto ownDomain = addedTo ? nullptr : domain();
    auto child = alloc<ZelStyle>()->initWithIdentifier(
        identifier, ownDomain ? ownDomain->currentScheme() : addedTo, parent);
    if (changes) {
        const StylingLock lock;
        const auto shared = std::make_shared<const InheritedChanges>(std::move(changes));
        const FirstCall call(*this, child, {nullptr, shared});
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
    const StylingLock lock;
    // The call may let go of the style and of its owner.
    const auto style = std::static_pointer_cast<ZelStyle>(shared_from_this());
    const std::shared_ptr<NSObject> owner = withOwner;
    const auto shared = std::make_shared<const UpdateObserver>(std::move(observer));
    const FirstCall call(*this, owner, {shared, nullptr});
    if (initialCall) {
        requireNoPrivateLock();
        (*shared)(owner, style, true);
    }
}

void ZelStyle::removeStyleUpdateObserverWithOwner(const std::shared_ptr<NSObject>& owner) {
    const auto followers = followersOf(*this);
    if (!owner || !followers) {
        return;
    }
    if (!followers->remove(*owner)) {
        const StylingLock untilTheUpdateIsOver;
        (void)followers->remove(*owner);
    }
}

} // namespace zel::inline v1
