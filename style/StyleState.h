// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "platform/text/Identifier.h"
#include "style/MergedValues.h"
#include "style/OwnValues.h"
#include "style/UpdateFollowers.h"

#include <ZelStyleKit/ZelStyle.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace zel::inline v1 {

/// Guards the fields of every style that say so. One lock for all, since merging a style's values
/// reads those of its ancestors. Reads of colours and numbers of predefined attributes don't
/// acquire it once the values are computed.
inline constinit PrivateLock stylesLock;

/// A style's fields.
struct ZelStyle::State {
    State();
    ~State();

    const std::uint64_t serial;
    std::atomic<std::uint64_t> counter{0}; ///< accepted updates of this style alone
    /// Made under `stylesLock` by the first read, and kept: a style that nobody reads has none.
    std::atomic<MergedValues*> merged{nullptr};

    std::weak_ptr<ZelStyleDomain> domain ZEL_GUARDED_BY(stylesLock);
    std::weak_ptr<ZelStyleScheme> scheme ZEL_GUARDED_BY(stylesLock);
    std::weak_ptr<ZelStyle> parentStyle ZEL_GUARDED_BY(stylesLock);
    Identifier identifier ZEL_GUARDED_BY(stylesLock);
    OwnValues own ZEL_GUARDED_BY(stylesLock);
    std::shared_ptr<UpdateFollowers> followers ZEL_GUARDED_BY(stylesLock); ///< made when needed

    /// The merged values, computed or not, made where there are none.
    MergedValues& mergedValues() ZEL_REQUIRES(stylesLock);
    /// Invalidates the merged values, where there are any.
    [[nodiscard]] MergedValues::Invalidated invalidateMerged() noexcept ZEL_REQUIRES(stylesLock) {
        MergedValues* const present = merged.load(std::memory_order_acquire);
        return present ? present->invalidate() : MergedValues::Invalidated();
    }
};

} // namespace zel::inline v1
