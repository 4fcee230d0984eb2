// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainState.h"
#include "platform/ObjectState.h"

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

/// The identifiers that apply to an object: each the nearest one set, on it or above it, the two
/// found independently.
struct AppliedIdentifiers {
    explicit AppliedIdentifiers(const NSObject& object) {
        std::shared_ptr<NSObject> held;
        const NSObject* current = &object;
        for (;;) {
            if (const ObjectState* state = ObjectState::find(*current)) {
                if (!scheme) {
                    scheme = state->customZelStyleSchemeIdentifier.load();
                }
                if (!style) {
                    style = state->customZelStyleIdentifier.load();
                }
            }
            if (scheme && style) {
                return;
            }
            held = parentOf(*current);
            if (!held) {
                return;
            }
            current = held.get();
        }
    }

    const PooledString* scheme = nullptr;
    const PooledString* style = nullptr;
};

} // namespace

// An object pinned to a scheme that lacks the style falls back to the current scheme's main style.
std::shared_ptr<ZelStyle> ZelStyleDomain::styleFor(const std::shared_ptr<NSObject>& styleable) {
    if (!styleable) {
        return mainStyle();
    }
    const AppliedIdentifiers applied(*styleable);
    std::shared_ptr<ZelStyle> style;
    if (applied.scheme) {
        style = schemeForIdentifier(applied.scheme->text)
                    ->styleForIdentifier(applied.style ? std::string_view(applied.style->text)
                                                       : ZelStyleIdentifierMain);
    } else if (applied.style) {
        style = styleForIdentifier(applied.style->text);
    }
    return style ? style : mainStyle();
}

std::shared_ptr<ZelStyle> ZelStyleDomain::_notifyStyleFor(const std::shared_ptr<NSObject>& object) {
    return object && object->asZelStyleable() ? styleFor(object) : mainStyle();
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
