// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelfuzz {

/// A fuzzer's input, read as lines of words, so that a seed can be written and read by hand. Any
/// bytes are a script: what is missing reads as empty, and nothing fails.
/// Refers to: the input.
class Script {
public:
    explicit Script(std::string_view input) : rest_(input) {}

    /// Goes to the next line; false behind the last one.
    bool nextLine();
    /// Whether the line has another word.
    [[nodiscard]] bool hasWord() const noexcept { return !line_.empty(); }
    /// The next word of the line, as it stands; blanks separate words.
    std::string_view word();
    /// The next word, or the rest of the line, with \n, \0, \s (a blank), \\ and \xHH in it read as
    /// what they stand for; \d writes what stands before it once more, up to 64 KiB.
    std::string text() { return unescaped(word()); }
    std::string textToLineEnd();
    /// The next word's first byte; 0 where there is none.
    char letter();
    /// The next word as a number: decimal (also inf, nan, -0, 5e-324), or "0x" and the 16 digits of
    /// its bits; of any other word the bytes are the bits.
    double number();
    std::uint64_t integer();

private:
    static std::string unescaped(std::string_view text);

    std::string_view rest_;
    std::string_view line_;
};

/// The parts of an input that consists of two: what stands before the first line "%%" and behind
/// it, which is empty where there is none.
struct TwoParts {
    explicit TwoParts(std::string_view input);
    std::string_view first;
    std::string_view second;
};

/// Whether an input is one of those that get the slow checks as well. Every one does when inputs
/// are replayed (by libFuzzer: with -runs=0); else it is one of so many, always the same ones.
[[nodiscard]] bool isOneOf(std::uint64_t many, std::string_view input);

} // namespace zelfuzz
