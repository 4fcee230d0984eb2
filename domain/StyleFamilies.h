// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "style/LookupChanges.h"
#include "styleable/StylingState.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
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
/// that have to be asked for their parents aren't in it. Refers to: listeners of the table, for as
/// long as none was added or removed. Threads: by the styling lock, but for what `linkLock` alone
/// guards.
class StyleFamilies {
public:
    /// A listener was added or removed.
    void invalidate() noexcept ZEL_REQUIRES(linkLock) { isStale_ = true; }
    /// Those whose style is that one or descends from it; nothing where that isn't known.
    [[nodiscard]] std::optional<std::span<Listener* const>> find(const ZelStyle& style) const
        ZEL_REQUIRES(linkLock);

    /// Begins building where that pays: true where the caller, who is about to walk over all
    /// listeners, has to add them and to end it. A handler may start another
    /// building during it; the families count only if both end complete.
    bool beginBuilding();
    /// Adds a listener. Without memory for it there will be no families: none is needed.
    void add(const std::shared_ptr<ZelStyle>& style, Listener& listener) noexcept;
    /// `isComplete` says whether all have been left with their styles, and nothing has changed.
    void endBuilding(bool isComplete) noexcept;
    /// How often any were built; by the styling lock.
    static inline std::uint64_t completions = 0;

private:
    /// A style that has listeners, or a descendant that has some.
    struct Node {
        std::vector<Listener*> listeners;
        std::vector<Node*> children;
        std::size_t begin = 0; ///< of its family among `listeners_`
        std::size_t end = 0;
    };
    void arrange(Node& root);

    std::unordered_map<std::uint64_t, Node> nodes_; ///< by the serial of the style's token
    std::vector<Node*> roots_;
    std::vector<Listener*> listeners_; ///< each family in one piece
    StylingMoment asked_;              ///< when a walk last could have built them
    StylingMoment built_;
    bool isStale_ ZEL_GUARDED_BY(linkLock) = true;
    bool hasAll_ = false; ///< whether nothing was left out since building began
};

} // namespace zel::inline v1
