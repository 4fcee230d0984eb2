// SPDX-License-Identifier: Apache-2.0
#include "style/MergedValues.h"

namespace zel {
inline namespace v1 {
namespace {

constexpr std::size_t initialCustomCapacity = 8;

} // namespace

MergedValues::CustomTable::CustomTable(std::size_t capacity)
    : mask(capacity - 1), places(std::make_unique<Place[]>(capacity)) {}

ZelAttributeValue::Other MergedValues::otherAt(AttributeIndex key) const {
    const auto found = others_.find(key);
    return found == others_.end() ? nullptr : found->second;
}

MergedValues::Dropped MergedValues::drop() noexcept {
    holdsOwn_ = false;
    sequence_.store(sequence_.load(std::memory_order_relaxed) | 1, std::memory_order_relaxed);
    return {std::exchange(others_, {}), std::exchange(snapshot_, nullptr)};
}

// A style's defaults are written and read in turns; merging anew for each read would be most of the
// work of making one.
bool MergedValues::dropButKeepOwn(AttributeIndex key, const ZelAttributeValue& value) {
    if (!holdsOwn_ || snapshot_ || !others_.empty() || value.other()) {
        return false;
    }
    sequence_.store(sequence_.load(std::memory_order_relaxed) | 1, std::memory_order_relaxed);
    holdsOwn_ = false; // while there may be no memory for the value
    putSlot(key, AttributeSlot::of(value));
    holdsOwn_ = true;
    return true;
}

void MergedValues::compute(const MergedValues* parent, const OwnValues& own) {
    if (parent || !holdsOwn_) {
        merge(parent, own);
    }
    sequence_.store(sequence_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

void MergedValues::merge(const MergedValues* parent, const OwnValues& own) {
    holdsOwn_ = false;
    if (parent) {
        copyFrom(*parent);
    } else {
        clear();
    }
    for (const auto& [key, value] : own.entries()) {
        if (parent && value.isNull()) {
            putSlot(key, AttributeSlot());
            others_.erase(key);
        } else {
            put(key, value);
        }
    }
    holdsOwn_ = parent == nullptr;
}

void MergedValues::put(AttributeIndex key, const ZelAttributeValue& value) {
    if (auto other = value.other()) {
        others_.insert_or_assign(key, std::move(other));
    } else if (!others_.empty()) {
        others_.erase(key);
    }
    putSlot(key, AttributeSlot::of(value));
}

void MergedValues::putSlot(AttributeIndex key, const AttributeSlot& slot) {
    if (key < ZelStyleAttributeCount) {
        predefined_[key].store(slot);
    } else {
        putCustom(key, slot);
    }
}

void MergedValues::putCustom(AttributeIndex key, const AttributeSlot& slot) {
    const CustomTable* present = custom_.load(std::memory_order_relaxed);
    CustomTable::Place* place = present ? placeOf(*present, key) : nullptr;
    if (place == nullptr) {
        if (slot.tag == AttributeSlot::absent) {
            return;
        }
        if (present == nullptr || (customCount_ + 1) * 2 > present->mask + 1) {
            growCustom();
        }
        const CustomTable& table = *customTables_.back();
        std::size_t at = firstPlace(key, table.mask);
        while (table.places[at].key.load(std::memory_order_relaxed) != 0) {
            at = (at + 1) & table.mask;
        }
        table.places[at].slot.store(slot);
        table.places[at].key.store(key, std::memory_order_release);
        ++customCount_;
        return;
    }
    place->slot.store(slot);
}

// The outgrown table stays: another thread may be looking through it.
void MergedValues::growCustom() {
    const std::size_t capacity =
        customTables_.empty() ? initialCustomCapacity : (customTables_.back()->mask + 1) * 2;
    auto larger = std::make_unique<CustomTable>(capacity);
    if (!customTables_.empty()) {
        const CustomTable& old = *customTables_.back();
        for (std::size_t from = 0; from <= old.mask; ++from) {
            const AttributeIndex key = old.places[from].key.load(std::memory_order_relaxed);
            if (key != 0) {
                std::size_t at = firstPlace(key, larger->mask);
                while (larger->places[at].key.load(std::memory_order_relaxed) != 0) {
                    at = (at + 1) & larger->mask;
                }
                larger->places[at].slot.store(old.places[from].slot.load());
                larger->places[at].key.store(key, std::memory_order_relaxed);
            }
        }
    }
    customTables_.push_back(std::move(larger));
    custom_.store(customTables_.back().get(), std::memory_order_release);
}

void MergedValues::clear() noexcept {
    for (AtomicSlot& slot : predefined_) {
        slot.store(AttributeSlot());
    }
    if (const CustomTable* table = custom_.load(std::memory_order_relaxed)) {
        for (std::size_t at = 0; at <= table->mask; ++at) {
            table->places[at].slot.store(AttributeSlot());
        }
    }
}

void MergedValues::copyFrom(const MergedValues& parent) {
    for (std::size_t key = 0; key < predefined_.size(); ++key) {
        predefined_[key].store(parent.predefined_[key].load());
    }
    if (const CustomTable* table = custom_.load(std::memory_order_relaxed)) {
        for (std::size_t at = 0; at <= table->mask; ++at) {
            table->places[at].slot.store(AttributeSlot());
        }
    }
    if (const CustomTable* table = parent.custom_.load(std::memory_order_relaxed)) {
        for (std::size_t at = 0; at <= table->mask; ++at) {
            const AttributeIndex key = table->places[at].key.load(std::memory_order_relaxed);
            if (key != 0) {
                putCustom(key, table->places[at].slot.load());
            }
        }
    }
    others_ = parent.others_;
}

std::optional<ZelAttributeValue> MergedValues::valueOf(AttributeIndex key,
                                                       const AttributeSlot& slot) const {
    return slot.tag == AttributeSlot::other ? ZelAttributeValue(otherAt(key)) : slot.asValue();
}

const std::shared_ptr<const ZelAttributeDictionary>& MergedValues::snapshot() {
    if (!snapshot_) {
        auto dictionary = std::make_shared<ZelAttributeDictionary>();
        const auto add = [&](AttributeIndex key, const AttributeSlot& slot) {
            if (const auto value = valueOf(key, slot)) {
                dictionary->emplace(attributeKeys().at(key).text, *value);
            }
        };
        for (AttributeIndex key = 0; key < predefined_.size(); ++key) {
            add(key, predefined_[key].load());
        }
        if (const CustomTable* table = custom_.load(std::memory_order_relaxed)) {
            for (std::size_t at = 0; at <= table->mask; ++at) {
                const auto& place = table->places[at];
                add(place.key.load(std::memory_order_relaxed), place.slot.load());
            }
        }
        snapshot_ = std::move(dictionary);
    }
    return snapshot_;
}

} // namespace v1
} // namespace zel
