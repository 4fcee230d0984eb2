// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zeltest {

/// Which write of a run it is: no two have the same.
struct WriteName {
    std::uint32_t round = 0;
    std::uint32_t writer = 0;
    std::uint32_t number = 0;
};

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
    std::int64_t time = 0; ///< in nanoseconds, of a clock that all processes share
};

/// Each writer has a key of its own.
inline std::string keyOf(std::uint32_t writer) {
    return "key." + std::to_string(writer);
}

/// What a write stores: its name and a filling of 0 to 250 letters that follows from it, so that a
/// value says by itself whether it is whole. Every eighth removes the key.
std::optional<std::string> valueOf(const WriteName& write);

/// Whether it is a value that some write stores.
bool isWhole(const std::string& value);

/// Writes the user's defaults, and reads them in between, until it is killed.
[[noreturn]] void writeUntilKilled(WriteName first, std::uint32_t writers, int pipe);

} // namespace zeltest
