// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/LookupChanges.h"
#include "styleable/StyleableTree.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace zel {
inline namespace v1 {

class ZelStyleDomain;

/// What is found on the way up from an object.
struct Ancestry {
    AppliedIdentifiers applied;
    bool isBelowTarget = false; ///< the target was the object or above it
};

/// Goes up from an object: asks it, and each object above it, for its parent, until it reaches a
/// known tree; no further than to both identifiers and, where there is one, the target.
Ancestry ancestryOf(const NSObject& object, const NSObject* target);

/// The style that identifiers lead to in a domain: of the scheme that they name, and only of that
/// one, else of the current one and the default one; the main style where that gives none.
std::shared_ptr<ZelStyle> styleForApplied(ZelStyleDomain& domain,
                                          const AppliedIdentifiers& applied);

/// The styles that one walk over listeners has found so far, so that listeners to which the same
/// identifiers apply share one look-up.
/// Owns: the styles, until the walk ends or there are too many of them.
/// Threads: the walk's.
class FoundStyles {
public:
    FoundStyles(ZelStyleDomain& domain, const ZelStyleDelivery& delivery) noexcept
        : domain_(domain), delivery_(delivery) {}

    struct Found {
        std::uint64_t lookups = 0; ///< `lookupChanges` when the style was looked up; 0: never
        bool isForced = false;     ///< whether the delivery forces the style
        std::uint64_t serial = 0;  ///< of the style's token
        std::shared_ptr<ZelStyle> style;
        AppliedIdentifiers applied;
        StyleableTree::Binding binding; ///< by which it was recognised last
    };
    /// Where the style of a binding is, or will be, kept; nothing where there is no room. Stays in
    /// place until `makeRoom`.
    Found* placeOf(const StyleableTree::Binding& binding) ZEL_REQUIRES(linkLock) {
        if (binding.epoch == last_->binding.epoch && binding.scheme == last_->binding.scheme &&
            binding.style == last_->binding.style) [[likely]] {
            return last_;
        }
        return search(binding);
    }
    /// The same of identifiers that were asked for: one place, which the next takes over.
    Found* placeOf(AppliedIdentifiers applied);
    /// Makes room where there is none. May end styles.
    void makeRoom();

    /// Looks the style up, unless it is known as of now.
    void update(Found& found) {
        if (found.lookups != lookupChanges.now()) [[unlikely]] {
            lookUp(found);
        }
    }

    /// Every style found by a binding is one that the delivery forces: the listeners are those of
    /// its family.
    void setOfFamily(bool isOfFamily) noexcept { isOfFamily_ = isOfFamily; }

private:
    static constexpr std::size_t capacity = 8;
    Found* search(const StyleableTree::Binding& binding) ZEL_REQUIRES(linkLock);
    void lookUp(Found& found);

    ZelStyleDomain& domain_;
    const ZelStyleDelivery& delivery_;
    std::array<Found, capacity> found_;
    Found asked_;
    std::size_t count_ = 0;
    Found* last_ = &asked_; ///< whose binding, of no epoch, no other equals
    bool isOfFamily_ = false;
};

/// Whether a delivery forces a style: any, or its filter and those that descend from it.
bool isForced(const std::shared_ptr<ZelStyle>& style, const ZelStyleDelivery& delivery);

} // namespace v1
} // namespace zel
