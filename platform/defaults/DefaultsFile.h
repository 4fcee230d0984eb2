// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include "platform/defaults/DefaultsFileFormat.h"
#include "platform/defaults/DefaultsFileSystem.h"

#include <mutex>
#include <optional>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The defaults in a file of the user's, shared with other processes and with whoever edits it.
/// Owns: what it last read of the file, in memory.
/// Threads: any. Readers wait for nobody's writing; writers wait for each other, here and in other
/// processes, up to two seconds, and then give up.
/// Failure: a file that can't be read holds nothing and is never written; a write that fails
/// leaves the file as it was. A file that nobody may write is left alone too, although it could be
/// replaced. A symbolic link stays; the file it leads to is read and written.
class DefaultsFile final : public NSUserDefaultsStore {
public:
    [[nodiscard]] std::optional<NSUserDefaultsValue> objectForKey(std::string_view key) override;
    bool setObject(const std::optional<NSUserDefaultsValue>& value,
                   std::string_view forKey) override;

private:
    struct Reading {
        FileVersion version;
        /// Whether the file had been left alone for long enough that a later write can't bear the
        /// same time stamp.
        bool settled = false;
        DefaultsFileEntries entries;
    };

    /// Brings `reading_` up to date; none where the file can't be read. Called with `mutex_` held.
    const Reading* current();

    std::mutex mutex_;               ///< never held while a file is written or its lock awaited
    std::optional<Reading> reading_; ///< guarded by mutex_
};

} // namespace v1
} // namespace zel
