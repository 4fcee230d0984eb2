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

/// What the last computation held its ancestors in, so that the next allocates nothing.
Styles& spareStyles() ZEL_REQUIRES(stylesLock) {
    static auto* const styles = new Styles; // never destroyed: styles may end at exit
    return *styles;
}

/// Computes the merged values of a style, and before them those of its ancestors, as far up as they
/// aren't there. A loop, so that no chain of parents is too long for the stack. The ancestors are
/// left in `held`: ending one needs the lock to be free.
void computeMerged(const ZelStyle& style, Styles& held) ZEL_REQUIRES(stylesLock) {
    State* each = &ZelStyleInternals::state(style);
    while (!each->mergedValues().isComputed()) {
        held.emplace_back(); // first: without memory for it the parent could end under the lock
        held.back() = each->parentStyle.lock();
        if (!held.back()) {
            held.pop_back();
            break;
        }
        each = &ZelStyleInternals::state(*held.back());
    }
    const MergedValues* above = nullptr;
    for (std::size_t i = held.size() + 1; i-- > 0;) {
        State& state = ZelStyleInternals::state(i == 0 ? style : *held[i - 1]);
        MergedValues& merged = state.mergedValues();
        if (!merged.isComputed()) {
            merged.compute(above, state.own);
        }
        above = &merged;
    }
}

/// Calls `read` under the lock with a style's merged values, which are computed first where they
/// aren't there.
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
        const PrivateGuard guard(stylesLock);
        held.swap(spareStyles());
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
    if (readPredefined(style, attribute, slot) && slot.tag != AttributeSlot::other) [[likely]] {
        return slot.asValue();
    }
    return readComputed(style, [&](const MergedValues& merged) { return merged.find(attribute); });
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
    invalidated = state(style).invalidateMerged();
    ZelAttributeDictionary& own = state(style).own;
    for (auto& [key, value] : values) {
        if (const auto found = own.find(key); found != own.end()) {
            std::swap(found->second, value);
        } else {
            own.emplace(key, value);
        }
    }
}

void ZelStyleInternals::_incrementSeed(ZelStyle& style) {
    MergedValues::Invalidated invalidated; // destroyed outside the lock
    state(style).counter.fetch_add(1, std::memory_order_acq_rel);
    const PrivateGuard guard(stylesLock);
    invalidated = state(style).invalidateMerged();
}

} // namespace zel::inline v1
