// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zel {
inline namespace v1 {

/// A line of a defaults file that could be understood. Offsets are in bytes into the whole text.
struct DefaultsFileLine {
    std::string key;
    NSUserDefaultsValue value;
    std::size_t begin = 0;
    std::size_t end = 0; ///< behind the line's end mark
    std::size_t valueBegin = 0;
    std::size_t valueEnd = 0;
};

/// Calls the visitor, in the text's order, for each line that holds an entry; passes over the rest.
/// In time linear in the text's length.
void forEachDefaultsLine(std::string_view text,
                         const std::function<void(DefaultsFileLine&&)>& visit);

/// Whether a key may stand without quotation marks.
bool isBareDefaultsKey(std::string_view key);

} // namespace v1
} // namespace zel
