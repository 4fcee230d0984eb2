// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/objects/EntryLinks.h"
#include "platform/objects/StyleBinding.h"
#include "platform/text/Identifier.h"

#include <ZelStyleKit/NSObject.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace zel {
inline namespace v1 {

/// What can be attached to any object, made when first needed: the styling state, and the entries
/// of the weak-keyed tables that have the object as their key. Kept small: every listener has one.
struct ObjectState {
    std::atomic<std::uint64_t> lastZelStyle{0}; ///< a token's serial
    AtomicIdentifier customZelStyleIdentifier;
    AtomicIdentifier customZelStyleSchemeIdentifier;
    BindingMemo binding; ///< kept for objects with a place in a known tree
    EntryLinks entries;  ///< guarded by linkLock()

    [[nodiscard]] bool hasCustomIdentifiers() const noexcept {
        return customZelStyleSchemeIdentifier.load() || customZelStyleIdentifier.load();
    }

    /// The state of an object, or nothing where none was ever set.
    static ObjectState* find(const NSObject& object) noexcept {
        return object.state_.load(std::memory_order_acquire);
    }
    /// The state of an object, made where it has none.
    static ObjectState& of(const NSObject& object);
    /// Removes the object's entries from their tables and deletes the state; for its destructor.
    static void end(NSObject& object) noexcept;

    /// Guards every link between an object and its entries. Nothing is called while it is held, and
    /// no lock taken but that of the pool of bindings, the innermost one.
    static std::mutex& linkLock() noexcept;
};

} // namespace v1
} // namespace zel
