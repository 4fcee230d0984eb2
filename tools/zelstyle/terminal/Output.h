// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/Options.h"

#include <string_view>

namespace zel::tool {

/// Standard output, written at once: what was written has left the process on return.
/// Owns: nothing; the descriptor is the process's.
/// Threads: one. Failure: the first one is remembered and ends all writing; whoever writes within
/// callbacks asks afterwards.
class Output {
public:
    void write(std::string_view text);

    /// Whether nothing more can be written, for whatever reason.
    [[nodiscard]] bool hasFailed() const noexcept { return error_ != 0; }
    /// The exit code for what became of the output. A reader that went away is no failure; any
    /// other is told on standard error.
    [[nodiscard]] int report() const;

    /// Whether coloured cells are wanted.
    [[nodiscard]] static bool showsColors(ColorChoice choice);

private:
    int error_ = 0; // errno of the failed write
};

} // namespace zel::tool
