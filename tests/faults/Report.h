// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/faults/Value.h"

#include <cstdint>

#include <time.h>

namespace zeltest {

/// What a writer says through the pipe, as it is in memory: short enough to be written whole or not
/// at all, whenever the writer is killed.
struct Report {
    enum class Kind : std::uint32_t {
        Begun,        ///< the call comes next
        Acknowledged, ///< the call has said that the value is durable
        Refused,      ///< the call has said that it is not, and has left the file as it was
        Misread       ///< the writer has read something else than what the file must hold
    };
    Kind kind = Kind::Begun;
    WriteName write;
    std::uint32_t key = 0;
    bool removes = false; ///< the key's entry, instead of storing a value
    std::int64_t time = 0;
};

/// Keys are numbers: that of a writer is its own, and nobody else's; the others are everybody's.
inline std::string keyNamed(std::uint32_t key) {
    return "key." + std::to_string(key);
}

/// Nanoseconds of a clock that all processes share.
inline std::int64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
}

} // namespace zeltest
