// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"

#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

/// Guards the lists of all managers and the fields of all modes: a mode's manager changes in the
/// same moment as the list that it is in.
inline constinit PrivateLock modesLock;

/// A mode's fields.
struct ZelStyleManagerMode::State {
    std::weak_ptr<ZelStyleManager> manager ZEL_GUARDED_BY(modesLock);
    std::optional<std::string> identifier ZEL_GUARDED_BY(modesLock);
    std::optional<std::string> name ZEL_GUARDED_BY(modesLock);
    std::uint64_t rank ZEL_GUARDED_BY(modesLock) = 0;
};

} // namespace zel::inline v1
