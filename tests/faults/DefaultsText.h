// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <string>

namespace zeltest {

/// The lines that stand in the defaults file from the beginning, which nobody may touch.
inline constexpr char foreignLines[] = "# kept\nno entry at all \x01\xFF = [\n";

/// The entries of a defaults file, by a reader of the tests' own. None where the file is not whole:
/// where anything but the foreign lines, and then one line for each key with a string, is in it.
std::optional<std::map<std::string, std::string>> readDefaultsText(const std::string& path);

} // namespace zeltest
