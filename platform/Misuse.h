// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace zel::inline v1 {

/// Gives a message to the host's misuse handler, where it has set one. No private lock is held.
void reportMisuse(std::string_view message) noexcept;

} // namespace zel::inline v1
