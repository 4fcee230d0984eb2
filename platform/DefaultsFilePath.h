// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// Where this user's defaults of this application stand: `defaults.conf` in a folder named after
/// the process, in $XDG_CONFIG_HOME or else ~/.config. None for a user without a home folder.
/// The environment and the process name are read on each call. Throws std::bad_alloc only.
std::optional<std::string> defaultsFilePath();

/// A name made fit for a single folder: distinct names stay distinct, nothing leads out of the
/// parent folder, and the result is never empty nor longer than file systems allow.
std::string folderNameFor(std::string_view name);

} // namespace v1
} // namespace zel
