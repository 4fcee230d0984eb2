// SPDX-License-Identifier: Apache-2.0
#include "style/MergedValues.h"

#include <string>
#include <utility>

namespace zel::inline v1 {

std::optional<ZelAttributeValue> MergedValues::find(ZelStyleAttribute attribute) const {
    const AttributeSlot slot = slots_[static_cast<std::size_t>(attribute)].load();
    return slot.tag == AttributeSlot::other ? find(ZelStyleAttributeKeyOf(attribute))
                                            : slot.asValue();
}

std::optional<ZelAttributeValue> MergedValues::find(std::string_view customKey) const {
    const auto found = others_.find(customKey);
    return found == others_.end() ? std::nullopt : std::optional(found->second);
}

const std::shared_ptr<const ZelAttributeDictionary>& MergedValues::snapshot() {
    if (!snapshot_) {
        auto dictionary = std::make_shared<ZelAttributeDictionary>(others_);
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if (const auto value = slots_[i].load().asValue()) {
                dictionary->emplace(ZelStyleAttributeKeyOf(static_cast<ZelStyleAttribute>(i)),
                                    *value);
            }
        }
        snapshot_ = std::move(dictionary);
    }
    return snapshot_;
}

MergedValues::Invalidated MergedValues::invalidate() noexcept {
    sequence_.store(sequence_.load(std::memory_order_relaxed) | 1, std::memory_order_relaxed);
    return {std::exchange(others_, {}), std::exchange(snapshot_, nullptr)};
}

// What an earlier computation that ran out of memory has left is overwritten.
void MergedValues::compute(const MergedValues* parent, const OwnValues& own) {
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        slots_[i].store(parent ? parent->slots_[i].load() : AttributeSlot());
    }
    others_ = parent ? parent->others_ : ZelAttributeDictionary();
    for (const auto& [attribute, value] : own.predefined()) {
        putPredefined(attribute, value, parent == nullptr);
    }
    for (const auto& [key, value] : own.custom()) {
        put(key, value, parent == nullptr);
    }
    sequence_.store(sequence_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

void MergedValues::putPredefined(ZelStyleAttribute attribute, const ZelAttributeValue& value,
                                 bool isRoot) {
    const bool isRemoved = value.isNull() && !isRoot;
    AtomicSlot& slot = slots_[static_cast<std::size_t>(attribute)];
    const bool hadOther = slot.load().tag == AttributeSlot::other;
    slot.store(isRemoved ? AttributeSlot() : AttributeSlot::of(value));
    if (hadOther || value.other()) {
        others_.erase(std::string(ZelStyleAttributeKeyOf(attribute)));
    }
    if (value.other()) {
        others_.emplace(ZelStyleAttributeKeyOf(attribute), value);
    }
}

void MergedValues::put(std::string_view key, const ZelAttributeValue& value, bool isRoot) {
    if (value.isNull() && !isRoot) {
        others_.erase(std::string(key));
    } else {
        others_.insert_or_assign(std::string(key), value);
    }
}

} // namespace zel::inline v1
