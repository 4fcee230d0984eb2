// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/ListenerTable.h"
#include "domain/StyleResolution.h"

#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

/// A walk over the listeners of a table that a notification is for, in the order of registration:
/// all of them, those at and below a target, or those of a family of styles. Candidates are
/// collected a batch at a time under `linkLock`, each with the place of its style, and served
/// without it. Those below a target are found by walking down its tree, those of a family by the
/// table's index; listeners that have to be asked for their parents are candidates in any case.
/// Where a handler changes meanwhile what made these the right ones, the walk goes on with every
/// listener still to come. A listener that is added during the walk isn't visited by it.
/// Threads: made, used and destroyed behind the styling lock.
class ListenerWalk {
public:
    /// A listener, and where its style is kept: nothing where it has to be asked.
    struct Candidate {
        Listener* listener;
        FoundStyles::Found* style;
    };

    ListenerWalk(ListenerTable& table, FoundStyles& styles, const std::shared_ptr<NSObject>& target,
                 const ZelStyle* family);
    ListenerWalk(const ListenerWalk&) = delete;
    ListenerWalk& operator=(const ListenerWalk&) = delete;
    ~ListenerWalk();

    /// The next candidate, or nothing at the end.
    const Candidate* next() {
        if (used_ == count_ || (isListed_ && moment_ != StylingMoment::now())) {
            if (!fill()) {
                return nullptr;
            }
        }
        return &batch_[used_++];
    }

    /// Where the style of a candidate is kept, whose owner is held: may ask it for its parents.
    /// Nothing where the notification isn't for it.
    FoundStyles::Found* styleOf(const Candidate& candidate, const NSObject& owner) {
        if (candidate.style && collected_ == bindingChanges.now()) [[likely]] {
            return candidate.style;
        }
        return resolve(*candidate.listener, owner);
    }

    /// Whether all listeners were visited and nothing has changed meanwhile.
    [[nodiscard]] bool hasVisitedAll() const noexcept {
        return !target_ && !wasListed_ && begun_ == StylingMoment::now();
    }

private:
    static constexpr std::size_t batchSize = 32;

    void collectTarget() ZEL_REQUIRES(linkLock);
    void collectFamily(const ZelStyle& family) ZEL_REQUIRES(linkLock);
    void collectAsked() ZEL_REQUIRES(linkLock);
    void finishCollecting();
    bool fill();
    void fillFromList() ZEL_REQUIRES(linkLock);
    void fillFromTable() ZEL_REQUIRES(linkLock);
    void leaveList() ZEL_REQUIRES(linkLock);
    bool take(Listener& listener) ZEL_REQUIRES(linkLock);
    FoundStyles::Found* resolve(const Listener& listener, const NSObject& owner);

    ListenerTable& table_;
    FoundStyles& styles_;
    const NSObject* const target_;
    const ZelStyleableNode* const targetNode_;
    const StylingMoment begun_ = StylingMoment::now();
    const std::uint64_t end_;     ///< the order before which listeners are visited
    const std::size_t listBegin_; ///< this walk's part of the table's candidates
    std::size_t listEnd_ = 0;
    std::size_t listNext_ = 0;
    std::size_t placeNext_ = 0; ///< among all listeners
    StylingMoment moment_;      ///< when the listed ones were the right ones
    bool isListed_ = false;     ///< whether it goes by the list, or by all listeners
    bool wasListed_ = false;
    bool testsEach_ = false;      ///< after the list was left: each is tested for the target
    bool needsRoom_ = false;      ///< for styles
    std::uint64_t collected_ = 0; ///< `bindingChanges` when the batch was collected
    std::size_t count_ = 0;
    std::size_t used_ = 0;
    std::array<Candidate, batchSize> batch_;
};

} // namespace v1
} // namespace zel
