// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// The library's resources: its localised strings, compiled in.
/// Owns: the host's string table, where one is set.
/// Threads: any thread, in handlers and destructors as well. Failure: a missing translation yields
/// the key itself.
class ZEL_EXPORT NSBundle {
public:
    /// A host's own string table: answers the text for a key, or nothing to leave the key itself.
    using StringTable = std::function<std::optional<std::string>(std::string_view key)>;

    /// `localizedStringForKey:value:table:` of the library's bundle, with no fallback value and the
    /// default table. The language is chosen from LANGUAGE, LC_ALL, LC_MESSAGES and LANG, as
    /// message catalogues choose it: LANGUAGE is a list by preference, and counts only where the
    /// locale is not "C" or "POSIX".
    static std::string localizedStringForKey(std::string_view key);

    /// Replaces the compiled-in tables altogether; none brings them back.
    static void setStringTable(StringTable table);
};

/// `localizedCaseInsensitiveCompare:`: negative, zero or positive as `a` sorts before, with or
/// after `b` for a reader of the user's locale, upper and lower case alike, whatever the alphabet.
/// UTF-8.
[[nodiscard]] ZEL_EXPORT int localizedCaseInsensitiveCompare(std::string_view a,
                                                             std::string_view b);

} // namespace v1
} // namespace zel
