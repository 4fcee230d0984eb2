// SPDX-License-Identifier: Apache-2.0
#include "style/StyleState.h"
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>

#include <vector>

namespace zel {
inline namespace v1 {
namespace {

/// A style whose values lock is held.
struct LockedStyle {
    explicit LockedStyle(const ZelStyle& style)
        : guard(ZelStyleInternals::state(style).valuesLock),
          values(&ZelStyleInternals::mergedValues(style)),
          own(&ZelStyleInternals::state(style).own) {}

    RecursiveGuard guard;
    MergedValues* values;
    const OwnValues* own;
};

/// The values lock of a style whose merged values are there. Parents that were held to compute them
/// may end with it, after the lock is released.
struct ComputedLock {
    std::vector<std::shared_ptr<const ZelStyle>> parents;
    RecursiveGuard guard;
};

/// Brings a style's merged values up to date. Locks the style, then each parent in turn up to the
/// first whose values are there; then computes downwards. A loop, so that no chain of parents is
/// too long for the stack.
ComputedLock lockComputed(const ZelStyle& style) {
    std::vector<std::shared_ptr<const ZelStyle>> parents;
    LockedStyle first(style);
    if (first.values->isComputed()) {
        return {{}, std::move(first.guard)};
    }
    std::vector<LockedStyle> locked;
    for (auto parent = style.parentStyle(); parent; parent = parent->parentStyle()) {
        parents.push_back(parent);
        locked.emplace_back(*parent);
        if (locked.back().values->isComputed()) {
            break;
        }
    }
    const MergedValues* above = nullptr;
    while (!locked.empty()) { // releases each parent when its child is next
        LockedStyle& each = locked.back();
        if (!each.values->isComputed()) {
            each.values->compute(above, *each.own);
        }
        above = each.values;
        LockedStyle& below = locked.size() > 1 ? locked[locked.size() - 2] : first;
        below.values->compute(above, *below.own);
        locked.pop_back();
    }
    if (!first.values->isComputed()) {
        first.values->compute(nullptr, *first.own);
    }
    return {std::move(parents), std::move(first.guard)};
}

} // namespace

MergedValues& ZelStyleInternals::mergedValues(const ZelStyle& style) {
    MergedValues* present = style.merged_.load(std::memory_order_acquire);
    if (present == nullptr) { // made once, under the values lock
        present = new MergedValues;
        style.merged_.store(present, std::memory_order_release);
    }
    return *present;
}

AttributeSlot ZelStyleInternals::computedSlot(const ZelStyle& style, AttributeIndex key) {
    const ComputedLock computed = lockComputed(style);
    AttributeSlot slot;
    (void)mergedValues(style).read(key, slot); // computed and locked: it can't fail
    return slot;
}

std::optional<ZelAttributeValue>
ZelStyle::valueForAttribute(std::optional<std::string_view> key) const {
    const PooledString* known = key ? attributeKeys().find(*key) : nullptr;
    if (known == nullptr) {
        return std::nullopt;
    }
    const RecursiveGuard guard(state_->valuesLock);
    const ZelAttributeValue* value = state_->own.find(known->index);
    return value ? std::optional<ZelAttributeValue>(*value) : std::nullopt;
}

std::optional<ZelAttributeValue>
ZelStyle::effectiveValueForAttribute(std::optional<std::string_view> key) const {
    const PooledString* known = key ? attributeKeys().find(*key) : nullptr;
    if (known == nullptr) {
        return std::nullopt;
    }
    const AttributeSlot slot = ZelStyleInternals::effectiveSlot(*this, known->index);
    if (slot.tag == AttributeSlot::other) {
        const ComputedLock computed = lockComputed(*this);
        const MergedValues& merged = ZelStyleInternals::mergedValues(*this);
        if (auto other = merged.otherAt(known->index)) {
            return ZelAttributeValue(std::move(other));
        }
        AttributeSlot changed; // another thread wrote meanwhile; read what it wrote
        (void)merged.read(known->index, changed);
        return changed.tag == AttributeSlot::null ? std::nullopt : changed.asValue();
    }
    return slot.tag == AttributeSlot::null ? std::nullopt : slot.asValue();
}

std::shared_ptr<const ZelAttributeDictionary> ZelStyle::effectiveValues() const {
    const ComputedLock computed = lockComputed(*this);
    return ZelStyleInternals::mergedValues(*this).snapshot();
}

void ZelStyle::setValue(const std::optional<ZelAttributeValue>& value,
                        std::optional<std::string_view> forAttribute) {
    if (!forAttribute) {
        throw ZelInvalidArgument("an attribute key must not be nil");
    }
    ZelStyleInternals::setValueAt(*this, attributeKeys().intern(*forAttribute)->index, value);
}

void ZelStyleInternals::setValueAt(ZelStyle& style, AttributeIndex key,
                                   const std::optional<ZelAttributeValue>& value) {
    std::optional<ZelAttributeValue> replaced; // these two end after the lock is released
    MergedValues::Dropped dropped;
    const RecursiveGuard guard(style.state_->valuesLock);
    replaced = style.state_->own.set(key, value ? *value : ZelAttributeValue(NSNull{}));
    if (MergedValues* merged = style.merged_.load(std::memory_order_acquire)) {
        dropped = merged->drop();
    }
}

} // namespace v1
} // namespace zel
