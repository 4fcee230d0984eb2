// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <filesystem>
#include <optional>
#include <string_view>

namespace zel::inline v1 {

/// Where this user's defaults of this application are: `defaults.conf` in a folder named after
/// the process, in $XDG_CONFIG_HOME or else ~/.config. None for a user without a home folder.
/// The environment and the process name are read on each call. Throws std::bad_alloc only.
std::optional<std::filesystem::path> defaultsFilePath();

/// The defaults in that file, shared with other processes and with whoever edits it.
/// Owns: nothing; the file is read on each call. Throws std::bad_alloc only, which NSUserDefaults
/// catches.
/// Threads: any. Readers wait for nobody's writing; writers wait for each other, here and in other
/// processes, up to two seconds, and then give up.
/// Failure: a file that can't be read holds nothing and is never written; a write that fails
/// leaves the file as it was. A file that is another user's, or that its owner may not write, is
/// read and left alone, although it could be replaced.
class DefaultsFile final : public NSUserDefaultsStore {
public:
    [[nodiscard]] std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override;
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override;
};

} // namespace zel::inline v1
