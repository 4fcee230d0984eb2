// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace zeltest {

/// What this process has asked of operator new so far, on every thread.
struct Allocations {
    std::size_t count = 0;
    std::size_t liveBytes = 0; ///< as requested, released ones taken off

    static Allocations now() noexcept;
};

} // namespace zeltest
