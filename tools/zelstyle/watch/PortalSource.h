// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/watch/AppearanceSource.h"

#include <chrono>
#include <memory>

namespace zel::tool {

/// Whether the command was built with the desktop portal.
[[nodiscard]] bool portalIsBuiltIn() noexcept;

/// Follows the desktop portal's colour scheme and tells every change of its status on standard
/// error. Waits for the first answer, but not longer than `wait`.
/// Nil where the portal isn't built in, and, with `onlyOnABus`, where no session bus answers.
[[nodiscard]] std::unique_ptr<AppearanceSource> followPortal(std::chrono::milliseconds wait,
                                                             bool onlyOnABus);

} // namespace zel::tool
