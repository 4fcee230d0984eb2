// SPDX-License-Identifier: Apache-2.0
#include "style/MergedValues.h"

#include <utility>

namespace zel::inline v1 {

std::optional<ZelAttributeValue> MergedValues::find(ZelStyleAttribute attribute) const {
    const AttributeSlot slot = slots_[static_cast<std::size_t>(attribute)].load();
    return slot.tag == AttributeSlot::other ? find(ZelStyleAttributeKeyOf(attribute))
                                            : slot.asValue();
}

std::optional<ZelAttributeValue> MergedValues::find(std::string_view key) const {
    const auto found = others_.find(key);
    return found == others_.end() || found->second.isNull() ? std::nullopt
                                                            : std::optional(found->second);
}

const std::shared_ptr<const ZelAttributeDictionary>& MergedValues::snapshot() {
    if (!snapshot_) {
        auto dictionary = std::make_shared<ZelAttributeDictionary>(others_);
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            const AttributeSlot slot = slots_[i].load();
            const auto value = slot.tag == AttributeSlot::null ? NSNull{} : slot.asValue();
            if (value) {
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

void MergedValues::compute(const MergedValues* parent, const ZelAttributeDictionary& own) {
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        slots_[i].store(parent ? parent->slots_[i].load() : AttributeSlot());
    }
    ZelAttributeDictionary others = parent ? parent->others_ : ZelAttributeDictionary();
    for (const auto& [key, value] : own) {
        const bool isRemoved = value.isNull() && parent != nullptr;
        const auto attribute = ZelStyleAttributeForKey(key);
        if (attribute) {
            slots_[static_cast<std::size_t>(*attribute)].store(
                isRemoved ? AttributeSlot() : AttributeSlot::of(value));
        }
        if (isRemoved || (attribute && !value.other())) {
            others.erase(key);
        } else {
            others.insert_or_assign(key, value);
        }
    }
    others_.swap(others);
    sequence_.store(sequence_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

} // namespace zel::inline v1
