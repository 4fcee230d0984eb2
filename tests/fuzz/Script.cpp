// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/Script.h"

#include <functional>

#include <algorithm>
#include <bit>
#include <charconv>
#include <optional>

namespace zelfuzz {
namespace {

/// Whether inputs are made up; else they are replayed.
bool& isFuzzing() {
    static bool is = false;
    return is;
}

constexpr std::size_t longestText = std::size_t{64} << 10;

template <class Number, class... Format>
std::optional<Number> wholeNumber(std::string_view word, Format... format) {
    Number number{};
    const char* const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, number, format...);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(number) : std::nullopt;
}

std::uint64_t bytesOf(std::string_view word) {
    std::uint64_t bits = 0;
    word.copy(reinterpret_cast<char*>(&bits), sizeof bits);
    return bits;
}

std::uint64_t bitsOf(std::string_view word) {
    const bool isHexadecimal = word.starts_with("0x");
    const auto bits = isHexadecimal ? wholeNumber<std::uint64_t>(word.substr(2), 16) : std::nullopt;
    return bits ? *bits : bytesOf(word);
}

} // namespace

bool Script::nextLine() {
    if (rest_.empty()) {
        line_ = {};
        return false;
    }
    const std::size_t end = rest_.find('\n');
    line_ = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
    return true;
}

std::string_view Script::word() {
    const std::size_t end = line_.find(' ');
    const std::string_view word = line_.substr(0, end);
    line_ = end == std::string_view::npos ? std::string_view() : line_.substr(end + 1);
    return word;
}

std::string Script::textToLineEnd() {
    const std::string_view line = line_;
    line_ = {};
    return unescaped(line);
}

char Script::letter() {
    const std::string_view read = word();
    return read.empty() ? '\0' : read.front();
}

double Script::number() {
    const std::string_view read = word();
    const auto number = wholeNumber<double>(read);
    return number ? *number : std::bit_cast<double>(bitsOf(read));
}

std::uint64_t Script::integer() {
    const std::string_view read = word();
    if (const auto number = wholeNumber<std::uint64_t>(read)) {
        return *number;
    }
    const auto number = wholeNumber<std::int64_t>(read);
    return number ? static_cast<std::uint64_t>(*number) : bitsOf(read);
}

std::string Script::unescaped(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char escaped = text[at] == '\\' && at + 1 < text.size() ? text[at + 1] : '\0';
        const auto byte = escaped == 'x' && at + 4 <= text.size()
                              ? wholeNumber<std::uint8_t>(text.substr(at + 2, 2), 16)
                              : std::nullopt;
        if (byte) {
            result += static_cast<char>(*byte);
            at += 3;
        } else if (escaped == 'd') {
            result += result.size() <= longestText / 2 ? result : std::string();
            ++at;
        } else if (const std::size_t known = std::string_view("n0s\\").find(escaped);
                   escaped != '\0' && known != std::string_view::npos) {
            result += std::string_view("\n\0 \\", 4)[known];
            ++at;
        } else {
            result += text[at];
        }
    }
    return result;
}

TwoParts::TwoParts(std::string_view input) : first(input) {
    constexpr std::string_view mark = "%%\n";
    std::size_t at = input.find(mark);
    while (at != std::string_view::npos && at > 0 && input[at - 1] != '\n') {
        at = input.find(mark, at + 1);
    }
    if (at != std::string_view::npos) {
        first = input.substr(0, at);
        second = input.substr(at + mark.size());
    }
}

bool isOneOf(std::uint64_t many, std::string_view input) {
    return !isFuzzing() || std::hash<std::string_view>()(input) % many == 0;
}

} // namespace zelfuzz

// libFuzzer calls it before anything else; what replays inputs without libFuzzer doesn't.
extern "C" int LLVMFuzzerInitialize(const int* count, char*** arguments) {
    const auto end = *arguments + *count;
    zelfuzz::isFuzzing() = std::find(*arguments, end, std::string_view("-runs=0")) == end;
    return 0;
}
