// SPDX-License-Identifier: Apache-2.0
#include "style/MergedValues.h"

#include <string>
#include <utility>

namespace zel::inline v1 {
namespace {

std::string_view keyAt(AttributeIndex index) noexcept {
    return ZelStyleAttributeKeyOf(static_cast<ZelStyleAttribute>(index));
}

} // namespace

std::optional<ZelAttributeValue> MergedValues::find(AttributeIndex index) const {
    const AttributeSlot slot = slots_[index].load();
    return slot.tag == AttributeSlot::other ? find(keyAt(index)) : slot.asValue();
}

std::optional<ZelAttributeValue> MergedValues::find(std::string_view customKey) const {
    const auto found = others_.find(customKey);
    return found == others_.end() ? std::nullopt : std::optional(found->second);
}

const std::shared_ptr<const ZelAttributeDictionary>& MergedValues::snapshot() {
    if (!snapshot_) {
        auto dictionary = std::make_shared<ZelAttributeDictionary>(others_);
        for (AttributeIndex index = 0; index < slots_.size(); ++index) {
            if (const auto value = slots_[index].load().asValue()) {
                dictionary->emplace(keyAt(index), *value);
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
    for (AttributeIndex index = 0; index < slots_.size(); ++index) {
        slots_[index].store(parent ? parent->slots_[index].load() : AttributeSlot());
    }
    others_ = parent ? parent->others_ : ZelAttributeDictionary();
    for (const auto& [index, value] : own.predefined()) {
        putPredefined(index, value, parent == nullptr);
    }
    for (const auto& [key, value] : own.custom()) {
        put(key, value, parent == nullptr);
    }
    sequence_.store(sequence_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

void MergedValues::putPredefined(AttributeIndex index, const ZelAttributeValue& value,
                                 bool isRoot) {
    const bool isRemoved = value.isNull() && !isRoot;
    const bool hadOther = slots_[index].load().tag == AttributeSlot::other;
    slots_[index].store(isRemoved ? AttributeSlot() : AttributeSlot::of(value));
    if (hadOther || value.other()) {
        others_.erase(std::string(keyAt(index)));
    }
    if (value.other()) {
        others_.emplace(keyAt(index), value);
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
