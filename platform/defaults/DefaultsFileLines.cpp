// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFileLines.h"

#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

namespace zel {
inline namespace v1 {
namespace {

bool isBareKeyCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// A number that takes up the whole token.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view token) {
    Number number{};
    const char* const end = token.data() + token.size();
    const auto [rest, error] = std::from_chars(token.data(), end, number);
    if (error != std::errc{} || rest != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<NSUserDefaultsValue> parsePlainValue(std::string_view token) {
    if (token == "true" || token == "false") {
        return NSNumber::numberWithBool(token == "true");
    }
    if (token.ends_with('u')) {
        token.remove_suffix(1);
        if (const auto number = wholeNumber<std::uint64_t>(token)) {
            return NSNumber::numberWithUnsignedLong(*number);
        }
        return std::nullopt;
    }
    if (const auto number = wholeNumber<std::int64_t>(token)) {
        return NSNumber::numberWithLong(*number);
    }
    if (const auto number = wholeNumber<double>(token)) {
        return NSNumber::numberWithDouble(*number);
    }
    return std::nullopt;
}

/// Reads the parts of one line, from left to right. Refers to the line.
class LineReader {
public:
    explicit LineReader(std::string_view line) : line_(line) {}

    [[nodiscard]] std::size_t position() const { return at_; }
    [[nodiscard]] bool atEnd() const { return at_ == line_.size(); }
    [[nodiscard]] bool sees(char c) const { return !atEnd() && line_[at_] == c; }

    void skipBlanks() {
        while (!atEnd() && isBlank(line_[at_])) {
            ++at_;
        }
    }

    bool take(char c) {
        const bool found = sees(c);
        at_ += found ? 1 : 0;
        return found;
    }

    std::optional<std::string> key() {
        if (sees('"')) {
            return quotedText();
        }
        const std::size_t begin = at_;
        while (!atEnd() && isBareKeyCharacter(line_[at_])) {
            ++at_;
        }
        if (at_ == begin) {
            return std::nullopt;
        }
        return std::string(line_.substr(begin, at_ - begin));
    }

    std::optional<NSUserDefaultsValue> value() {
        if (sees('"')) {
            return quotedText();
        }
        const std::size_t begin = at_;
        while (!atEnd() && !isBlank(line_[at_]) && line_[at_] != '#') {
            ++at_;
        }
        return parsePlainValue(line_.substr(begin, at_ - begin));
    }

private:
    std::optional<std::string> quotedText() {
        std::string text;
        ++at_;
        while (!atEnd()) {
            const char c = line_[at_++];
            if (c == '"') {
                return text;
            }
            if (c != '\\') {
                text += c;
                continue;
            }
            const std::optional<char> escaped = escapedCharacter();
            if (!escaped) {
                return std::nullopt;
            }
            text += *escaped;
        }
        return std::nullopt;
    }

    std::optional<char> escapedCharacter() {
        const char c = atEnd() ? '\0' : line_[at_++];
        switch (c) {
        case '"':
        case '\\':
            return c;
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'x':
            return hexadecimalCharacter();
        default:
            return std::nullopt;
        }
    }

    std::optional<char> hexadecimalCharacter() {
        const std::string_view digits = line_.substr(at_, 2);
        const char* const end = digits.data() + digits.size();
        unsigned char byte = 0;
        const auto [rest, error] = std::from_chars(digits.data(), end, byte, 16);
        if (digits.size() != 2 || error != std::errc{} || rest != end) {
            return std::nullopt;
        }
        at_ += 2;
        return static_cast<char>(byte);
    }

    std::string_view line_;
    std::size_t at_ = 0;
};

/// How many bytes of byte order marks a line begins with. On any line, as in files that were put
/// together: what a line means must not depend on how many lines before it are removed.
std::size_t byteOrderMarksOf(std::string_view line) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    std::size_t length = 0;
    while (line.substr(length).starts_with(mark)) {
        length += mark.size();
    }
    return length;
}

/// The entry on a line that begins at an offset of the text; none where it can't be understood.
std::optional<DefaultsFileLine> parseLine(std::string_view content, std::size_t offset) {
    LineReader reader(content);
    reader.skipBlanks();
    auto key = reader.key();
    reader.skipBlanks();
    if (!key || !reader.take('=')) {
        return std::nullopt;
    }
    reader.skipBlanks();
    const std::size_t begin = reader.position();
    auto value = reader.value();
    const std::size_t end = reader.position();
    reader.skipBlanks();
    if (!value || (!reader.atEnd() && !reader.sees('#'))) {
        return std::nullopt;
    }
    return DefaultsFileLine{std::move(*key), std::move(*value), 0, 0, offset + begin, offset + end};
}

} // namespace

void forEachDefaultsLine(std::string_view text,
                         const std::function<void(DefaultsFileLine&&)>& visit) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t mark = text.find('\n', begin);
        const bool complete = mark != std::string_view::npos;
        std::string_view content = text.substr(begin, complete ? mark - begin : mark);
        if (content.ends_with('\r')) {
            content.remove_suffix(1);
        }
        const std::size_t end = complete ? mark + 1 : text.size();
        const std::size_t marks = byteOrderMarksOf(content);
        if (auto line = parseLine(content.substr(marks), begin + marks)) {
            // Those at the text's beginning belong to the file and not to its first line.
            line->begin = begin == 0 ? marks : begin;
            line->end = end;
            visit(std::move(*line));
        }
        begin = end;
    }
}

bool isBareDefaultsKey(std::string_view key) {
    for (const char c : key) {
        if (!isBareKeyCharacter(c)) {
            return false;
        }
    }
    return !key.empty();
}

} // namespace v1
} // namespace zel
