// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <string_view>

#include <stdio.h>
#include <unistd.h>

namespace zelfuzz {

/// Ends the process where a property doesn't hold, so that the fuzzer keeps the input that broke
/// it. `about` is what it didn't hold for.
inline void require(bool holds, std::string_view property, std::string_view about = {}) {
    if (!holds) {
        ::dprintf(STDERR_FILENO, "broken: %.*s\n  for: %.*s\n", static_cast<int>(property.size()),
                  property.data(), static_cast<int>(about.size()), about.data());
        std::abort();
    }
}

} // namespace zelfuzz
