// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
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

/// What the operations are called, and how often each is drawn.
struct Vocabulary {
    std::vector<std::string_view> names;
    std::vector<unsigned> weights;
};

/// A script drawn at random; the same for the same seed.
Script drawScript(std::uint64_t seed, std::size_t steps, const Vocabulary& vocabulary);

/// As text, an operation a line: "setValue 1 0 3 0", what callbacks do behind "p3" for program 3.
void print(std::ostream& out, const Script& script, const Vocabulary& vocabulary);
/// The reverse. Raises `std::runtime_error` on a line that says nothing known.
Script parse(std::istream& in, const Vocabulary& vocabulary);

} // namespace zeltest
