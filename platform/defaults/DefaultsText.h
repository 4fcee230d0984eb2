// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

// The text of a defaults file: lines of `key = value`, made to be read and edited by hand.
//
//     style-manager-active-mode = "always-dark"   # a string; \" \\ \n \r \t \xHH inside
//     "a key with spaces" = true                  # or false
//     width = 42                                  # signed; -42 as well
//     serial = 42u                                # unsigned
//     zoom = 1.5                                  # double; also 1e+20, inf, nan
//
// Any other line (a comment, another program's entry, damage) means nothing here and stays as it
// is, byte for byte. Where several lines have one key, the last that can be understood counts.
// Lines end with LF or CRLF; one byte order mark may stand before each.
// Pure functions in time linear in the text's length; they throw nothing but std::bad_alloc.

using DefaultsEntries = std::map<std::string, NSUserDefaultsValue, std::less<>>;

/// The entries that a text holds.
DefaultsEntries parseDefaultsText(std::string_view text);

/// The text with a value under the key: only the value of the line that counts is replaced, or a
/// line added at the end. For none, every line of the key is removed.
/// A double keeps every bit but a NaN's payload.
std::string editDefaultsText(std::string_view text, std::string_view key,
                             const std::optional<NSUserDefaultsValue>& value);

} // namespace zel::inline v1
