// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace zel {
inline namespace v1 {

/// Where this user's defaults of this application stand: `defaults.conf` in a folder named after
/// the process, in $XDG_CONFIG_HOME or else ~/.config. None for a user without a home folder.
/// The environment and the process name are read on each call. Throws std::bad_alloc only.
std::optional<std::string> defaultsFilePath();

} // namespace v1
} // namespace zel
