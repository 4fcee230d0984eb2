// SPDX-License-Identifier: Apache-2.0
#include "style/ZelStyleInternals.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyle.h>

#include <utility>
#include <vector>

namespace zel::inline v1 {
namespace {

using State = ZelStyleInternals::State;
using Styles = std::vector<std::shared_ptr<const ZelStyle>>;

/// What a thread's last computation held its ancestors in, so that the next allocates nothing.
Styles& spareStyles() {
    static thread_local Styles styles;
    return styles;
}

/// Computes the merged values of a style, and before them those of its ancestors, as far up as they
/// aren't there. A loop, so that no chain of parents is too long for the stack. The ancestors are
/// left in `held`: ending one needs the lock to be free.
void computeMerged(const ZelStyle& style, Styles& held) ZEL_REQUIRES(stylesLock) {
    const ZelStyle* top = &style;
    while (!ZelStyleInternals::state(*top).mergedValues().isComputed()) {
        auto parent = ZelStyleInternals::state(*top).parentStyle.lock();
        if (!parent) {
            break;
        }
        top = parent.get();
        held.push_back(std::move(parent));
    }
    const MergedValues* above = nullptr;
    for (std::size_t i = held.size() + 1; i-- > 0;) {
        State& each = ZelStyleInternals::state(i == 0 ? style : *held[i - 1]);
        MergedValues& merged = each.mergedValues();
        if (!merged.isComputed()) {
            merged.compute(above, each.own);
        }
        above = &merged;
    }
}

/// What `read` answers of a style's merged values, which are computed for it where they aren't
/// there; the lock is held.
template <class Read>
auto readComputed(const ZelStyle& style, Read read) {
    Styles held = std::exchange(spareStyles(), {});
    auto result = [&] {
        const PrivateGuard guard(stylesLock);
        computeMerged(style, held);
        return read(ZelStyleInternals::state(style).mergedValues());
    }();
    held.clear(); // may end styles, and so compute others
    spareStyles() = std::move(held);
    return result;
}

std::optional<ZelAttributeValue> withoutNull(std::optional<ZelAttributeValue> value) {
    return value && value->isNull() ? std::nullopt : std::move(value);
}

} // namespace

MergedValues& ZelStyle::State::mergedValues() {
    MergedValues* present = merged.load(std::memory_order_acquire);
    if (present == nullptr) {
        present = new MergedValues;
        merged.store(present, std::memory_order_release);
    }
    return *present;
}

AttributeSlot ZelStyleInternals::predefinedSlot(const ZelStyle& style,
                                                ZelStyleAttribute attribute) {
    AttributeSlot slot;
    if (!readPredefined(style, attribute, slot)) [[unlikely]] {
        slot = readComputed(style, [&](const MergedValues& merged) {
            AttributeSlot read;
            (void)merged.readPredefined(attribute, read);
            return read; // computed and locked: it can't fail
        });
    }
    return slot;
}

std::optional<ZelAttributeValue>
ZelStyle::valueForAttribute(const std::optional<std::string_view>& key) const {
    if (!key) {
        return std::nullopt;
    }
    const PrivateGuard guard(stylesLock);
    const auto found = state_->own.find(*key);
    return found == state_->own.end() ? std::nullopt : std::optional(found->second);
}

std::optional<ZelAttributeValue> ZelStyleInternals::effectiveValue(const ZelStyle& style,
                                                                   ZelStyleAttribute attribute) {
    const AttributeSlot slot = predefinedSlot(style, attribute);
    if (slot.tag != AttributeSlot::other) [[likely]] {
        return slot.tag == AttributeSlot::null ? std::nullopt : slot.asValue();
    }
    return withoutNull(
        readComputed(style, [&](const MergedValues& merged) { return merged.find(attribute); }));
}

// Reading computes the merged values under any key, nil included.
std::optional<ZelAttributeValue>
ZelStyle::effectiveValueForAttribute(const std::optional<std::string_view>& key) const {
    if (const auto attribute = key ? ZelStyleAttributeForKey(*key) : std::nullopt) {
        return ZelStyleInternals::effectiveValue(*this, *attribute);
    }
    return withoutNull(readComputed(
        *this, [&](const MergedValues& merged) { return key ? merged.find(*key) : std::nullopt; }));
}

std::shared_ptr<const ZelAttributeDictionary> ZelStyle::effectiveValues() const {
    return readComputed(*this, [](MergedValues& merged) { return merged.snapshot(); });
}

void ZelStyle::setValue(const std::optional<ZelAttributeValue>& value,
                        std::optional<std::string_view> forAttribute) {
    if (!forAttribute) {
        throw ZelInvalidArgument("an attribute key must not be nil");
    }
    ZelAttributeDictionary one;
    one.emplace(*forAttribute, value.value_or(NSNull{}));
    ZelStyleInternals::setValues(*this, std::move(one));
}

void ZelStyleInternals::setValues(ZelStyle& style, ZelAttributeDictionary values) {
    MergedValues::Invalidated invalidated; // destroyed outside the lock, as what is replaced
    const PrivateGuard guard(stylesLock);
    for (auto& [key, value] : values) {
        const auto [own, isNew] = state(style).own.try_emplace(key, value);
        if (!isNew) {
            std::swap(own->second, value);
        }
    }
    invalidated = state(style).invalidateMerged();
}

void ZelStyleInternals::_incrementSeed(ZelStyle& style) {
    MergedValues::Invalidated invalidated; // destroyed outside the lock
    state(style).counter.fetch_add(1, std::memory_order_acq_rel);
    const PrivateGuard guard(stylesLock);
    invalidated = state(style).invalidateMerged();
}

} // namespace zel::inline v1
