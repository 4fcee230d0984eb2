// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

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
/// after `b` for a reader of the user's locale, upper and lower case alike. UTF-8; a byte that is
/// none counts as U+FFFD. By the standard library's locale that the environment names at the
/// process's first comparison; where it isn't installed, by code points (C.UTF-8). Threads: any, in
/// handlers and destructors as well.
[[nodiscard]] ZEL_EXPORT int localizedCaseInsensitiveCompare(std::string_view a,
                                                             std::string_view b);

/// A host's own comparison, by the rules of its toolkit. Called on the thread that compares, which
/// is the one that adds a mode, with no private lock held; it may do what a handler may. Must
/// not raise: names for which it does count as alike.
using LocalizedComparison = std::function<int(std::string_view a, std::string_view b)>;

/// Has names compared by a host's comparison instead; none brings the user's locale back. A list
/// that is sorted already stays as it is until it changes. Threads: as above.
ZEL_EXPORT void setLocalizedComparison(LocalizedComparison comparison);

} // namespace zel::inline v1
