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
          own(&ZelStyleInternals::ownValues(style)) {}

    RecursiveGuard guard;
    MergedValues* values;
    const OwnValues* own;
};

using Parents = std::vector<std::shared_ptr<const ZelStyle>>;

/// Vectors that one computation leaves to the thread's next, so that it allocates nothing.
template <class Vector>
class Borrowed {
public:
    Borrowed() : vector_(std::exchange(spare(), {})) {}
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;
    ~Borrowed() {
        vector_.clear(); // may end styles, and so compute others
        spare() = std::move(vector_);
    }
    Vector& operator*() noexcept { return vector_; }
    Vector* operator->() noexcept { return &vector_; }

private:
    static Vector& spare() {
        static thread_local Vector vector;
        return vector;
    }
    Vector vector_;
};

/// Holds the values lock of a style whose merged values are there. Where they weren't, locks each
/// parent in turn up to the first whose values are there, then computes downwards. A loop, so that
/// no chain of parents is too long for the stack.
class ComputedLock {
public:
    explicit ComputedLock(const ZelStyle& style) : first_(style) {
        if (!first_.values->isComputed()) {
            compute(style);
        }
    }

private:
    void compute(const ZelStyle& style) {
        Borrowed<std::vector<LockedStyle>> locked;
        for (auto parent = style.parentStyle(); parent; parent = parent->parentStyle()) {
            parents_->push_back(parent);
            locked->emplace_back(*parent);
            if (locked->back().values->isComputed()) {
                break;
            }
        }
        const MergedValues* above = nullptr;
        while (!locked->empty()) { // releases each parent when its child is done
            LockedStyle& each = locked->back();
            if (!each.values->isComputed()) {
                each.values->compute(above, *each.own);
            }
            above = each.values;
            LockedStyle& below = locked->size() > 1 ? (*locked)[locked->size() - 2] : first_;
            below.values->compute(above, *below.own);
            locked->pop_back();
        }
        if (!first_.values->isComputed()) {
            first_.values->compute(nullptr, *first_.own);
        }
    }

    Borrowed<Parents> parents_; // held while their values are read; may end when the lock is free
    LockedStyle first_;
};

} // namespace

OwnValues& ZelStyleInternals::ownValues(const ZelStyle& style) {
    return style.state_->own.with(style.state_->valuesLock);
}

MergedValues& ZelStyleInternals::mergedValues(const ZelStyle& style) {
    MergedValues* present = style.merged_.load(std::memory_order_acquire);
    if (present == nullptr) { // made once, under the values lock
        present = new MergedValues;
        style.merged_.store(present, std::memory_order_release);
    }
    return *present;
}

AttributeSlot ZelStyleInternals::computedSlot(const ZelStyle& style, AttributeIndex key) {
    const ComputedLock computed(style);
    AttributeSlot slot;
    (void)mergedValues(style).read(key, slot); // computed and locked: it can't fail
    return slot;
}

std::optional<ZelAttributeValue> ZelStyleInternals::computedValue(const ZelStyle& style,
                                                                  AttributeIndex key) {
    const ComputedLock computed(style);
    const MergedValues& merged = mergedValues(style);
    AttributeSlot slot;
    (void)merged.read(key, slot); // computed and locked: it can't fail
    if (slot.tag == AttributeSlot::other) {
        return ZelAttributeValue(merged.otherAt(key));
    }
    return slot.tag == AttributeSlot::null ? std::nullopt : slot.asValue();
}

std::optional<ZelAttributeValue>
ZelStyle::valueForAttribute(const std::optional<std::string_view>& key) const {
    const PooledString* known = key ? attributeKeys().find(*key) : nullptr;
    if (known == nullptr) {
        return std::nullopt;
    }
    const RecursiveGuard guard(state_->valuesLock);
    const ZelAttributeValue* value = ZelStyleInternals::ownValues(*this).find(known->index);
    return value ? std::optional<ZelAttributeValue>(*value) : std::nullopt;
}

std::shared_ptr<const ZelAttributeDictionary> ZelStyle::effectiveValues() const {
    const ComputedLock computed(*this);
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
    const ZelAttributeValue stored = value ? *value : ZelAttributeValue(NSNull{});
    replaced = ownValues(style).set(key, stored);
    MergedValues* merged = style.merged_.load(std::memory_order_acquire);
    if (merged && !merged->dropButKeepOwn(key, stored)) {
        dropped = merged->drop();
    }
}

} // namespace v1
} // namespace zel
