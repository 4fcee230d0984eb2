// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleResolution.h"

#include "domain/DomainInternals.h"
#include "style/LookupChanges.h"

#include <ZelStyleKit/ZelStyleScheme.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <utility>

namespace zel::inline v1 {
namespace {

/// Adds an object's identifiers, each unless something below has set it.
void addUnset(AppliedIdentifiers& applied, const Identifier& scheme, const Identifier& style) {
    applied.scheme = applied.scheme ? applied.scheme : scheme;
    applied.style = applied.style ? applied.style : style;
}

/// The next object up; nil at the end, which an object that is not styleable is.
std::shared_ptr<NSObject> parentOf(const NSObject& object) {
    const ZelStyleable* styleable = object.asZelStyleable();
    requireNoPrivateLock();
    return styleable ? styleable->parentZelStyleable() : nullptr;
}

/// The style that identifiers lead to in a domain: of the scheme that they name, and only of that
/// one, else of the current one and the default one; the main style where that gives none.
/// An object pinned to a scheme that lacks the style falls back to the current scheme's main style.
std::shared_ptr<ZelStyle> styleForApplied(ZelStyleDomain& domain,
                                          const AppliedIdentifiers& applied) {
    std::shared_ptr<ZelStyle> style;
    if (applied.scheme) {
        style = domain.schemeForIdentifier(*applied.scheme)
                    ->styleForIdentifier(applied.style ? std::string_view(*applied.style)
                                                       : ZelStyleIdentifierMain);
    } else if (applied.style) {
        style = domain.styleForIdentifier(*applied.style);
    }
    return style ? style : domain.mainStyle();
}

} // namespace

Ancestry ancestryOf(const NSObject& object, const NSObject* target) {
    Ancestry found;
    std::shared_ptr<NSObject> held;
    for (const NSObject* each = &object; each; each = held.get()) {
        const ZelStyleableNode* const node = StyleableTree::nodeOf(*each);
        found.isBelowTarget = found.isBelowTarget || each == target;
        const auto* state = Attachment::find<StylingState>(*each);
        if (node) {
            const PrivateGuard guard(linkLock);
            const auto above = StyleableTree::identifiersOf(StyleableTree::bindingOf(*node));
            addUnset(found.applied, above.scheme, above.style);
            found.isBelowTarget =
                found.isBelowTarget || (target && StyleableTree::isAtOrBelow(*node, *target));
            return found;
        }
        if (state) {
            const PrivateGuard guard(linkLock);
            addUnset(found.applied, state->schemeIdentifier, state->styleIdentifier);
        }
        if (found.applied.scheme && found.applied.style && (!target || found.isBelowTarget)) {
            break;
        }
        held = parentOf(*each);
    }
    return found;
}

bool isForced(const std::shared_ptr<ZelStyle>& style, const ZelStyleDelivery& delivery) {
    const auto& only = delivery.forStyleOnly;
    return delivery.force && (!only || (style && (style == only || style->isChildOf(only))));
}

void FoundStyles::search(const ZelStyleableNode& node) {
    const PrivateGuard guard(linkLock);
    const auto binding = StyleableTree::bindingOf(node);
    select(StyleableTree::identifiersOf(binding));
    last_->binding = binding;
}

// Compared by text: equal identifiers of two objects lie at different addresses.
void FoundStyles::select(AppliedIdentifiers&& applied) {
    for (Found& each : found_) {
        if (each.applied == applied) {
            last_ = &each;
            return;
        }
    }
    last_ = &found_[oldest_];
    oldest_ = (oldest_ + 1) % found_.size();
    replaced_[0] = std::move(last_->style);
    hasReplaced_ = true;
    *last_ = Found();
    last_->applied = std::move(applied);
}

void FoundStyles::lookUp(Found& found) {
    const std::uint64_t lookups = lookupChanges.now();
    auto style = styleForApplied(domain_, found.applied);
    found.isForced =
        (found.binding.epoch != 0 && family_ == StylingMoment::now()) || isForced(style, delivery_);
    found.serial = ZelStyleToken(style).serial();
    found.lookups = lookups;
    replaced_[1] = std::exchange(found.style, std::move(style));
    hasReplaced_ = true;
}

std::shared_ptr<ZelStyle> ZelStyleDomain::styleFor(const std::shared_ptr<NSObject>& styleable) {
    return styleable ? styleForApplied(*this, ancestryOf(*styleable, nullptr).applied)
                     : mainStyle();
}

bool ZelStyleDomain::isEqualOrChildOf(const std::shared_ptr<NSObject>& object,
                                      const std::shared_ptr<NSObject>& other) {
    for (std::shared_ptr<NSObject> current = object; current; current = parentOf(*current)) {
        if (current == other) {
            return true;
        }
    }
    return false;
}

std::shared_ptr<ZelStyle> ZelStyle::forStyleable(const std::shared_ptr<NSObject>& styleable) {
    const auto domain = ZelStyleDomain::domainForStyleable(styleable);
    return (domain ? domain : ZelStyleDomain::defaultDomain())->styleFor(styleable);
}

} // namespace zel::inline v1
