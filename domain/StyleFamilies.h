// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "style/LookupChanges.h"
#include "styleable/StylingState.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace zel::inline v1 {

class ZelStyle;

/// What `bindingChanges` and `lookupChanges` say: between two equal moments nothing happened
/// that could give a listener another style than the one it was given last.
struct StylingMoment {
    std::uint64_t bindings = 0;
    std::uint64_t lookups = 0;

    static StylingMoment now() noexcept { return {bindingChanges.now(), lookupChanges.now()}; }
    friend bool operator==(const StylingMoment&, const StylingMoment&) noexcept = default;
};

/// The listeners of a table by the families of their styles. An update delivers to a style's
/// family: the style and its descendants. Every child that follows then delivers to its own family,
/// and a walk over all listeners for each would be quadratic (10,000 followers with a listener
/// each: 1.1 s instead of 12 ms). So the second such full walk with nothing changed since the first
/// also builds this, and later deliveries visit one family only, until something changes. Listeners
/// that have to be asked for their parents aren't in it.
/// Refers to: listeners of the table, for as long as none was added or removed.
/// Threads: by the styling lock, but for what `linkLock` alone guards.
class StyleFamilies {
public:
    /// A listener was added or removed.
    void invalidate() noexcept ZEL_REQUIRES(linkLock) { isStale_ = true; }
    [[nodiscard]] bool areKnown() const noexcept ZEL_REQUIRES(linkLock) {
        return !isStale_ && built_ == StylingMoment::now();
    }
    /// Calls `visit` for the listeners whose style is that one or descends from it, in no order;
    /// while they are known.
    template <class Visit>
    void forEachIn(ZelStyleToken family, Visit visit) {
        const auto found = nodes_.find(family.serial());
        path_.clear();
        if (found != nodes_.end()) {
            path_.push_back(&found->second);
        }
        while (!path_.empty()) {
            const Node* const node = path_.back();
            path_.pop_back();
            std::ranges::for_each(node->listeners, visit);
            path_.insert(path_.end(), node->children.begin(), node->children.end());
        }
    }

    /// Begins building where that pays: the caller, who is about to walk over all listeners, adds
    /// them and ends it. Answers the number of this building, 0 where it doesn't pay. Only the
    /// building that was begun last, by a handler perhaps, counts.
    std::uint64_t beginBuilding();
    /// Adds a listener. Without memory for it the building doesn't count.
    void add(const std::shared_ptr<ZelStyle>& style, const Listener& listener) noexcept;
    /// All listeners were added, and nothing has changed since it began.
    void endBuilding(std::uint64_t building) noexcept;
    /// How often any were built.
    static inline std::uint64_t completions = 0;

private:
    /// A style that has listeners, or a descendant that has some.
    struct Node {
        std::vector<const Listener*> listeners;
        std::vector<const Node*> children;
    };

    std::unordered_map<std::uint64_t, Node> nodes_; ///< by the serial of the style's token
    std::vector<const Node*> path_;                 ///< kept, so that a delivery allocates nothing
    StylingMoment lastFullWalk_;                    ///< when a walk last could have built them
    StylingMoment built_;
    std::uint64_t building_ = 0; ///< the number of the last one
    bool isStale_ ZEL_GUARDED_BY(linkLock) = true;
};

} // namespace zel::inline v1
