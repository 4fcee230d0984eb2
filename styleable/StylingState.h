// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/ChangeCounter.h"
#include "platform/locks/PrivateLock.h"
#include "platform/objects/Attachment.h"
#include "platform/text/Identifier.h"

#include <ZelStyleKit/NSObject.h>

#include <atomic>
#include <cstdint>

namespace zel::inline v1 {

class ZelStyleableNode;
struct Listener;

/// Guards what ties objects together, for all objects and domains: the links of known trees, the
/// identifiers that objects carry and what is remembered of them, and the structure of the tables
/// of listeners.
inline constinit PrivateLock linkLock;

/// Counts whatever may give an object another style than before, or make it forget which it was
/// given: a custom identifier, a link of a known tree, or a last style that was set by hand, that
/// was noted after a call during which families were built, or that was noted for an object which
/// has listened in several tables at once. A parent that the library had to ask the host for is
/// never remembered.
inline constinit ChangeCounter bindingChanges;

/// What an object carries of styling. Made when first needed: by a custom identifier, a last style
/// or a registration.
/// Owns: the identifiers. Refers to: the object's listeners, which end with this, and its node.
/// Threads: `lastZelStyle` any; the others as they say.
struct StylingState final : Attachment {
    explicit StylingState(const NSObject& /*object*/) noexcept {}
    ~StylingState() override; ///< ends the object's listeners, in every domain

    [[nodiscard]] bool hasIdentifiers() const noexcept ZEL_REQUIRES(linkLock) {
        return styleIdentifier || schemeIdentifier;
    }

    std::atomic<std::uint64_t> lastZelStyle{0}; ///< the serial of a style's token; 0: nil
    /// Whether the object has had several listeners at once, in two domains or of both kinds in
    /// one: they all share `lastZelStyle`. By the styling lock.
    bool hasListenedElsewhere = false;
    /// The object's place in a known tree, from its first registration until the node ends. Written
    /// under `linkLock`, by a registration and by the object's destructor: whoever holds the object
    /// behind the styling lock reads it without.
    const ZelStyleableNode* node = nullptr;
    Identifier styleIdentifier ZEL_GUARDED_BY(linkLock);
    Identifier schemeIdentifier ZEL_GUARDED_BY(linkLock);
    Listener* listeners ZEL_GUARDED_BY(linkLock) = nullptr; ///< a list, `Listener::nextOfOwner`
};

} // namespace zel::inline v1
