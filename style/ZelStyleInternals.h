// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "platform/text/Identifier.h"
#include "style/MergedValues.h"
#include "style/UpdateFollowers.h"

#include <ZelStyleKit/ZelStyle.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace zel::inline v1 {

/// Guards the fields of every style that say so. One lock for all, since merging a style's values
/// reads those of its ancestors. Reads of colours and numbers of predefined attributes don't
/// acquire it once the values are computed.
inline constinit PrivateLock stylesLock;

/// A style's fields.
struct ZelStyle::State {
    ~State();

    static inline std::atomic<std::uint64_t> lastSerial{0};
    const std::uint64_t serial = ++lastSerial; ///< never used again
    std::atomic<std::uint64_t> counter{0};     ///< accepted updates of this style alone
    /// Made under `stylesLock` by the first read, and kept: a style that nobody reads has none.
    std::atomic<MergedValues*> merged{nullptr};

    std::weak_ptr<ZelStyleDomain> domain ZEL_GUARDED_BY(stylesLock);
    std::weak_ptr<ZelStyleScheme> scheme ZEL_GUARDED_BY(stylesLock);
    std::weak_ptr<ZelStyle> parentStyle ZEL_GUARDED_BY(stylesLock);
    Identifier identifier ZEL_GUARDED_BY(stylesLock);
    ZelAttributeDictionary own ZEL_GUARDED_BY(stylesLock); ///< null markers included
    std::shared_ptr<UpdateFollowers> followers ZEL_GUARDED_BY(stylesLock); ///< made when needed

    /// The merged values, computed or not, made where there are none.
    MergedValues& mergedValues() ZEL_REQUIRES(stylesLock) {
        if (merged.load(std::memory_order_relaxed) == nullptr) {
            merged.store(new MergedValues, std::memory_order_release);
        }
        return *merged.load(std::memory_order_relaxed);
    }
    /// Invalidates the merged values, where there are any.
    [[nodiscard]] MergedValues::Invalidated invalidateMerged() noexcept ZEL_REQUIRES(stylesLock) {
        MergedValues* const present = merged.load(std::memory_order_acquire);
        return present ? present->invalidate() : MergedValues::Invalidated();
    }
};

/// What a style keeps to itself, for the library's other sources: its fields, reads without a lock,
/// and the internal operations.
struct ZelStyleInternals {
    using State = ZelStyle::State;
    static State& state(const ZelStyle& style) noexcept { return *style.state_; }

    /// Copies the merged slot of a predefined attribute, without a lock; false where the merged
    /// values aren't there.
    [[nodiscard, gnu::always_inline]] static bool
    readPredefined(const ZelStyle& style, ZelStyleAttribute attribute, AttributeSlot& slot) {
        const MergedValues* merged = state(style).merged.load(std::memory_order_acquire);
        return merged && merged->readPredefined(attribute, slot);
    }
    /// The same slot, computed under the lock where needed. Not inlined, unlike the read above.
    [[gnu::noinline]] static AttributeSlot computedSlot(const ZelStyle& style,
                                                        ZelStyleAttribute attribute);

    /// The effective value of a predefined attribute, nothing for the null marker.
    static std::optional<ZelAttributeValue> effectiveValue(const ZelStyle& style,
                                                           ZelStyleAttribute attribute);

    /// Stores own values in one step; afterwards `values` holds what has to be destroyed.
    struct Written {
        std::string_view key;
        ZelAttributeValue value;
    };
    static void setValues(ZelStyle& style, std::span<Written> values);

    /// The providers of the process, in their order.
    static const std::vector<std::shared_ptr<ZelStyleDefaultValueProvider>>&
    _defaultValueProviders();
    /// `_setupWithDefaultValuesUsingScheme:`
    static void _setupWithDefaultValuesUsingScheme(const std::shared_ptr<ZelStyle>& style,
                                                   const std::shared_ptr<ZelStyleScheme>& scheme);
    /// `_incrementSeed`: one more accepted update, and the merged values are invalid.
    static void _incrementSeed(ZelStyle& style);
};

} // namespace zel::inline v1
