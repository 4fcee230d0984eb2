// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <string_view>
#include <vector>

namespace zeltest {

/// One operation: which, and four small numbers that say what it is done to. Every number is
/// meaningful; the player reduces it to what there is.
struct Operation {
    std::size_t command = 0;
    std::array<unsigned, 4> arguments{};
};

/// What is done one after the other, and what callbacks do when they are called.
struct Script {
    static constexpr std::size_t programCount = 12;
    std::vector<Operation> steps;
    std::array<std::vector<Operation>, programCount> programs;
};

/// The script that some bytes stand for. Any bytes stand for one: behind their end there are zeros
/// until it has everything that every script has.
Script scriptOf(std::string_view bytes);

/// Prints the programs (p) and the steps (s) for a reader, an operation a line.
void print(std::ostream& out, const Script& script);

} // namespace zeltest
