// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSUserDefaults.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelfuzz {

/// What is written under a key; none removes the key.
struct Write {
    std::string key;
    std::optional<zel::NSUserDefaultsValue> value;
};

/// Whether two values are the same one, kind and every bit but a NaN's payload.
[[nodiscard]] bool isSame(const std::optional<zel::NSUserDefaultsValue>& a,
                          const std::optional<zel::NSUserDefaultsValue>& b);

/// What holds for a file's text by itself: its entries make another file that holds the same ones,
/// and each entry can be written and removed.
void checkEntries(std::string_view text);

/// What holds for a write into a file's text: the key has the value, everything else is as it was,
/// and the lines that are no entries of the key are there byte for byte.
void checkWrite(std::string_view text, const Write& write);

} // namespace zelfuzz
