// SPDX-License-Identifier: Apache-2.0
#include "domain/BoundStyles.h"
#include "domain/DomainState.h"
#include "platform/objects/ObjectState.h"
#include "platform/views/StyleableTree.h"
#include "style/StyleLookupEpoch.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleable.h>

namespace zel {
inline namespace v1 {
namespace {

/// The next object up; nil at the end, which an object that is not styleable is.
std::shared_ptr<NSObject> parentOf(const NSObject& object) {
    const ZelStyleable* styleable = object.asZelStyleable();
    return styleable ? styleable->parentZelStyleable() : nullptr;
}

/// Each identifier the nearest one set, on the object or above it, the two found independently.
AppliedIdentifiers appliedByAsking(const NSObject& object) {
    AppliedIdentifiers applied;
    std::shared_ptr<NSObject> held;
    for (const NSObject* current = &object; current; current = held.get()) {
        if (const ObjectState* state = ObjectState::find(*current)) {
            if (!applied.scheme) {
                applied.scheme = state->customZelStyleSchemeIdentifier.load();
            }
            if (!applied.style) {
                applied.style = state->customZelStyleIdentifier.load();
            }
        }
        if (applied.scheme && applied.style) {
            break;
        }
        held = parentOf(*current);
    }
    return applied;
}

} // namespace

StyleBinding styleBindingOf(const NSObject& object) {
    if (const ObjectState* state = ObjectState::find(object)) {
        if (const auto bound = state->binding.load(BindingEpoch::now())) {
            return *bound;
        }
    }
    const ZelStyleable* styleable = object.asZelStyleable();
    if (!styleable) {
        return 0;
    }
    const ZelStyleableNode* node = styleable->zelStyleableNode();
    return node ? ZelStyleableTree::bindingOf(*node) : styleBindingOf(appliedByAsking(object));
}

void BoundStyles::lookUp(StyleBinding binding, Found& found) {
    const std::uint64_t epoch = StyleLookupEpoch::now();
    auto style = domain_._styleForBinding(binding);
    found.isForced = isForcedNow(style);
    found.serial = serialOf(style);
    found.epoch = epoch;
    found.binding = binding;
    found.style.swap(style); // the former one may end now
}

std::shared_ptr<ZelStyle> ZelStyleDomain::mainStyle() {
    std::uint64_t drops = 0;
    {
        const std::scoped_lock guard(state_->mutex);
        if (state_->mainStyle) {
            return state_->mainStyle;
        }
        drops = state_->mainStyleDrops;
    }
    auto style = styleForIdentifier(ZelStyleIdentifierMain);
    const std::scoped_lock guard(state_->mutex);
    if (drops == state_->mainStyleDrops && !state_->mainStyle) {
        state_->mainStyle = style;
    }
    return style;
}

std::shared_ptr<ZelStyle>
ZelStyleDomain::styleForIdentifier(std::optional<std::string_view> identifier) {
    std::shared_ptr<ZelStyleScheme> current; // ends outside the lock
    const RecursiveGuard guard(state_->schemesLock);
    current = currentScheme();
    if (current) {
        if (auto style = current->styleForIdentifier(identifier)) {
            return style;
        }
    }
    const auto found = state_->schemesByIdentifier().find(ZelStyleSchemeIdentifierDefault);
    return found == state_->schemesByIdentifier().end()
               ? nullptr
               : found->second->styleForIdentifier(identifier);
}

// The forest has the styles of the listeners whose parents are known; that of one that was asked
// may not be in it.
bool BoundStyles::isForcedNow(const std::shared_ptr<ZelStyle>& style) const {
    const bool isCurrent = forest_ && style && forestEpoch_ == StyleLookupEpoch::now();
    const auto own = isCurrent ? forest_->familyOf(*style) : StyleForest::Family{};
    if (own.begin == own.end) {
        return isForced(style, delivery_);
    }
    const auto family = forest_->familyOf(*delivery_.forStyleOnly);
    return own.begin >= family.begin && own.begin < family.end;
}

// An object pinned to a scheme that lacks the style falls back to the current scheme's main style.
std::shared_ptr<ZelStyle> ZelStyleDomain::_styleForBinding(std::uint32_t binding) {
    const AppliedIdentifiers applied = appliedIdentifiersOf(binding);
    std::shared_ptr<ZelStyle> style;
    if (applied.scheme) {
        style = schemeForIdentifier(applied.scheme.text())
                    ->styleForIdentifier(applied.style ? std::string_view(applied.style.text())
                                                       : ZelStyleIdentifierMain);
    } else if (applied.style) {
        style = styleForIdentifier(applied.style.text());
    }
    return style ? style : mainStyle();
}

std::shared_ptr<ZelStyle> ZelStyleDomain::styleFor(const std::shared_ptr<NSObject>& styleable) {
    if (!styleable) {
        return mainStyle();
    }
    return _styleForBinding(styleable->asZelStyleable()
                                ? styleBindingOf(*styleable)
                                : styleBindingOf(appliedByAsking(*styleable)));
}

std::shared_ptr<ZelStyle> ZelStyleDomain::_notifyStyleFor(const std::shared_ptr<NSObject>& object) {
    return object ? _styleForBinding(styleBindingOf(*object)) : mainStyle();
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
    const ZelStyleable* conforming = styleable ? styleable->asZelStyleable() : nullptr;
    const auto identifier =
        conforming ? conforming->domainIdentifierOfZelStyleable() : std::nullopt;
    return ZelStyleDomain::domainForIdentifier(identifier)->styleFor(styleable);
}

} // namespace v1
} // namespace zel
