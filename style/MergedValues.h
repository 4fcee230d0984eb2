// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/AttributeKeys.h"
#include "style/AttributeSlot.h"
#include "style/OwnValues.h"

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace zel {
inline namespace v1 {

/// The cache of a style's merged values, its own over its parent's. Predefined attributes stand at
/// fixed places and custom ones in a hash table by key, so that a read takes no lock and writes
/// nothing: it looks at a counter, copies a slot, and looks again. The counter is odd while the
/// values are dropped or being written.
/// Owns: its slots; hash tables it has outgrown (together no larger than the present one).
/// Threads: `read` and `isComputed` any; everything else under the style's values lock.
struct MergedValues {
    /// Whether the values are there; false once they were dropped.
    [[nodiscard]] bool isComputed() const noexcept {
        return (sequence_.load(std::memory_order_acquire) & 1) == 0;
    }

    /// A copy of the slot of a predefined attribute; nothing while the values aren't there.
    [[nodiscard, gnu::always_inline]] bool readPredefined(AttributeIndex key,
                                                          AttributeSlot& slot) const noexcept {
        const std::uint64_t before = sequence_.load(std::memory_order_acquire);
        return (before & 1) == 0 && copy(predefined_[key], before, slot);
    }
    /// The same of any attribute.
    [[nodiscard, gnu::always_inline]] bool read(AttributeIndex key,
                                                AttributeSlot& slot) const noexcept {
        const std::uint64_t before = sequence_.load(std::memory_order_acquire);
        return (before & 1) == 0 &&
               copy(key < ZelStyleAttributeCount ? predefined_[key] : customSlot(key), before,
                    slot);
    }

    /// A value that is neither colour nor number, while they are there; under the lock.
    [[nodiscard]] ZelAttributeValue::Other otherAt(AttributeIndex key) const;

    /// What a drop leaves to end outside the lock.
    struct Dropped {
        std::map<AttributeIndex, ZelAttributeValue::Other> others;
        std::shared_ptr<const ZelAttributeDictionary> snapshot;
    };
    /// Forgets the values.
    Dropped drop() noexcept;
    /// Forgets the values after an own one was written, but writes that one too where they are a
    /// root's: unless the style gets a parent first, the next computation finds them as they are to
    /// be. False, and nothing is done, where they aren't a root's or hold what may not end here.
    [[nodiscard]] bool dropButKeepOwn(AttributeIndex key, const ZelAttributeValue& value);
    /// Computes them: the parent's, which must be there, if there is a parent, then the own ones.
    /// An own null marker removes the inherited key; a root keeps its null markers.
    void compute(const MergedValues* parent, const OwnValues& own);

    /// An immutable copy by key, the same one until the next drop.
    [[nodiscard]] const std::shared_ptr<const ZelAttributeDictionary>& snapshot();

private:
    struct CustomTable {
        explicit CustomTable(std::size_t capacity);
        struct Place {
            std::atomic<AttributeIndex> key{0}; ///< 0: free ("styleType" is never custom)
            AtomicSlot slot;
        };
        std::size_t mask;
        std::unique_ptr<Place[]> places;
    };

    [[nodiscard]] static std::size_t firstPlace(AttributeIndex key, std::size_t mask) noexcept {
        return (key * 0x9E3779B9U >> 8) & mask;
    }
    [[nodiscard]] static CustomTable::Place* placeOf(const CustomTable& table,
                                                     AttributeIndex key) noexcept {
        for (std::size_t at = firstPlace(key, table.mask);; at = (at + 1) & table.mask) {
            const AttributeIndex found = table.places[at].key.load(std::memory_order_acquire);
            if (found == key) {
                return &table.places[at];
            }
            if (found == 0) {
                return nullptr;
            }
        }
    }
    /// Copies a slot; whether it is still what it was when the counter was read before.
    [[nodiscard, gnu::always_inline]] bool copy(const AtomicSlot& from, std::uint64_t before,
                                                AttributeSlot& slot) const noexcept {
        slot = from.load();
        return sequence_.load(std::memory_order_relaxed) == before;
    }
    /// The slot of a custom attribute, an absent one where it has none.
    [[nodiscard]] const AtomicSlot& customSlot(AttributeIndex key) const noexcept {
        static constinit const AtomicSlot absent;
        const CustomTable* table = custom_.load(std::memory_order_acquire);
        const CustomTable::Place* place = table ? placeOf(*table, key) : nullptr;
        return place ? place->slot : absent;
    }
    void merge(const MergedValues* parent, const OwnValues& own);
    void put(AttributeIndex key, const ZelAttributeValue& value);
    void putSlot(AttributeIndex key, const AttributeSlot& slot);
    void putCustom(AttributeIndex key, const AttributeSlot& slot);
    void copyFrom(const MergedValues& parent);
    void clear() noexcept;
    void growCustom();
    [[nodiscard]] std::optional<ZelAttributeValue> valueOf(AttributeIndex key,
                                                           const AttributeSlot& slot) const;

    std::atomic<std::uint64_t> sequence_{1};
    std::array<AtomicSlot, ZelStyleAttributeCount> predefined_;
    std::atomic<CustomTable*> custom_{nullptr};
    std::size_t customCount_ = 0;                            ///< places taken, absent ones included
    std::vector<std::unique_ptr<CustomTable>> customTables_; ///< the last one is in use
    std::map<AttributeIndex, ZelAttributeValue::Other> others_;
    std::shared_ptr<const ZelAttributeDictionary> snapshot_;
    bool holdsOwn_ = false; ///< the values are the own ones alone, computed or not
};

} // namespace v1
} // namespace zel
