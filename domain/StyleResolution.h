// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "domain/StyleFamilies.h"
#include "style/LookupChanges.h"
#include "styleable/StyleableTree.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleChangeEvent.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace zel::inline v1 {

class ZelStyleDomain;

/// What is found on the way up from an object.
struct Ancestry {
    AppliedIdentifiers applied;
    bool isBelowTarget = false; ///< the target was the object or above it
};

/// Goes up from an object: asks it, and each object above it, for its parent, until it reaches a
/// known tree, or has both identifiers and, where one is given, the target.
Ancestry ancestryOf(const NSObject& object, const NSObject* target);

/// The styles that one walk over listeners has found so far, so that listeners to which the same
/// identifiers apply share one look-up.
/// Owns: the styles, until the walk ends or another one takes their place.
/// Threads: the walk's, which holds the listeners' objects.
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
        StyleableTree::Binding binding; ///< of a node that has it; epoch 0: of none
    };

    /// The style for a node's object, whose binding has just been read. Each of these answers is
    /// good until the next.
    const Found& of(const ZelStyleableNode& node, const StyleableTree::Binding& binding) {
        if (binding != last_->binding) [[unlikely]] {
            search(node);
        }
        return updated(*last_);
    }
    /// The style for identifiers that were asked for; without any, the main style.
    const Found& of(AppliedIdentifiers applied) {
        select(std::move(applied));
        return updated(*last_);
    }

    /// The walk visits the filter's family alone: until that moment is over, a style found by a
    /// node is forced without a check.
    void setFamilyMoment(const StylingMoment& moment) noexcept { family_ = moment; }
    /// Lets go of the styles that others have replaced, which may end and run anything: not between
    /// finding a style and its use.
    void endReplaced() noexcept {
        if (hasReplaced_) [[unlikely]] {
            hasReplaced_ = false;
            replaced_ = {};
        }
    }

private:
    const Found& updated(Found& found) {
        if (found.lookups != lookupChanges.now()) [[unlikely]] {
            lookUp(found);
        }
        return found;
    }
    void search(const ZelStyleableNode& node);
    void select(AppliedIdentifiers&& applied);
    void lookUp(Found& found);

    ZelStyleDomain& domain_;
    const ZelStyleDelivery& delivery_;
    std::array<Found, 8> found_;
    std::size_t oldest_ = 0;                            ///< of them
    Found* last_ = &found_[0];                          ///< the one that was used last
    StylingMoment family_;                              ///< of no moment: all listeners are visited
    std::array<std::shared_ptr<ZelStyle>, 2> replaced_; ///< by a search, by a look-up
    bool hasReplaced_ = false;
};

/// Whether a delivery forces a style: any, or its filter and those that descend from it.
bool isForced(const std::shared_ptr<ZelStyle>& style, const ZelStyleDelivery& delivery);

} // namespace zel::inline v1
