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
    auto parent = ZelStyleInternals::state(style).parentStyle.lock();
    while (parent) {
        State& above = ZelStyleInternals::state(*parent);
        held.push_back(std::move(parent));
        parent = above.mergedValues().isComputed() ? nullptr : above.parentStyle.lock();
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
    Styles held;
    auto result = [&] {
        const PrivateGuard guard(stylesLock);
        MergedValues& merged = ZelStyleInternals::state(style).mergedValues();
        if (!merged.isComputed()) {
            held.swap(spareStyles());
            computeMerged(style, held);
        }
        return read(merged);
    }();
    if (held.capacity() > 0) {
        held.clear(); // may end styles, and so compute others
        spareStyles() = std::move(held);
    }
    return result;
}

} // namespace

AttributeSlot ZelStyleInternals::computedSlot(const ZelStyle& style, ZelStyleAttribute attribute) {
    return readComputed(style, [&](const MergedValues& merged) {
        AttributeSlot slot;
        (void)merged.readPredefined(attribute, slot); // computed and locked: it can't fail
        return slot;
    });
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
    AttributeSlot slot;
    if (!readPredefined(style, attribute, slot)) [[unlikely]] {
        slot = computedSlot(style, attribute);
    }
    if (slot.tag == AttributeSlot::other) [[unlikely]] {
        return readComputed(style,
                            [&](const MergedValues& merged) { return merged.find(attribute); });
    }
    return slot.asValue();
}

// Reading computes the merged values under any key, nil included.
std::optional<ZelAttributeValue>
ZelStyle::effectiveValueForAttribute(const std::optional<std::string_view>& key) const {
    if (const auto attribute = key ? ZelStyleAttributeForKey(*key) : std::nullopt) {
        return ZelStyleInternals::effectiveValue(*this, *attribute);
    }
    return readComputed(
        *this, [&](const MergedValues& merged) { return key ? merged.find(*key) : std::nullopt; });
}

std::shared_ptr<const ZelAttributeDictionary> ZelStyle::effectiveValues() const {
    return readComputed(*this, [](MergedValues& merged) { return merged.snapshot(); });
}

void ZelStyle::setValue(const std::optional<ZelAttributeValue>& value,
                        std::optional<std::string_view> forAttribute) {
    if (!forAttribute) {
        throw ZelInvalidArgument("an attribute key must not be nil");
    }
    ZelStyleInternals::Written one{*forAttribute, value.value_or(NSNull{})};
    ZelStyleInternals::setValues(*this, {&one, 1});
}

void ZelStyleInternals::setValues(ZelStyle& style, std::span<Written> values) {
    MergedValues::Invalidated invalidated; // destroyed outside the lock
    const PrivateGuard guard(stylesLock);
    ZelAttributeDictionary& own = state(style).own;
    for (auto& [key, value] : values) {
        if (const auto found = own.find(key); found != own.end()) {
            std::swap(found->second, value);
        } else {
            own.emplace(key, value);
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
