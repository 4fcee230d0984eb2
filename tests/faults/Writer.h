// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace zeltest {

/// Who writes, and where the reports go.
struct WriterOrder {
    std::uint64_t seed = 0;
    std::uint32_t round = 0;
    std::uint32_t writer = 0;
    std::uint32_t writers = 0;    ///< keys from 0 to here are the writers' own
    std::uint32_t sharedKeys = 0; ///< keys behind those are everybody's
    int pipe = -1;
};

/// Writes the user's defaults, and reads them in between, until it is killed.
[[noreturn]] void writeUntilKilled(const WriterOrder& order);

} // namespace zeltest
