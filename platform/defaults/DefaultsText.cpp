// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsText.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>
#include <utility>

namespace zel::inline v1 {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t";
constexpr std::string_view bareKeyCharacters = "abcdefghijklmnopqrstuvwxyz"
                                               "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
/// Characters that a string escapes, and the letters that then follow the backslash.
constexpr std::string_view escapedCharacters = "\"\\\n\r\t";
constexpr std::string_view escapeLetters = "\"\\nrt";

/// A line that could be understood. Refers to the text.
struct Entry {
    std::string key;
    NSUserDefaultsValue value;
    std::string_view line; ///< with its end mark
    std::string_view valueText;
};

/// Removes up to so many bytes from the beginning of the rest, and answers them.
std::string_view take(std::string_view& rest, std::size_t length) {
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(taken.size());
    return taken;
}

void takeBlanks(std::string_view& rest) {
    take(rest, rest.find_first_not_of(blanks));
}

/// A number that takes up the whole token.
template <typename Number, typename... Base>
std::optional<Number> wholeNumber(std::string_view token, Base... base) {
    Number number{};
    const char* const end = token.data() + token.size();
    const auto [rest, error] = std::from_chars(token.data(), end, number, base...);
    return error == std::errc{} && rest == end ? std::optional(number) : std::nullopt;
}

/// Takes what follows a backslash.
std::optional<char> takeEscaped(std::string_view& rest) {
    const std::string_view letter = take(rest, 1);
    if (letter == "x") {
        const std::string_view digits = take(rest, 2);
        const auto byte = wholeNumber<unsigned char>(digits, 16);
        return digits.size() == 2 && byte ? std::optional(static_cast<char>(*byte)) : std::nullopt;
    }
    const std::size_t index = letter.empty() ? std::string_view::npos : escapeLetters.find(letter);
    return index == std::string_view::npos ? std::nullopt : std::optional(escapedCharacters[index]);
}

std::optional<std::string> takeQuoted(std::string_view& rest) {
    std::string text;
    take(rest, 1);
    while (!rest.empty()) {
        const char c = take(rest, 1).front();
        if (c == '"') {
            return text;
        }
        const auto plain = c == '\\' ? takeEscaped(rest) : std::optional(c);
        if (!plain) {
            return std::nullopt;
        }
        text += *plain;
    }
    return std::nullopt;
}

std::optional<std::string> takeKey(std::string_view& rest) {
    if (rest.starts_with('"')) {
        return takeQuoted(rest);
    }
    const std::string_view key = take(rest, rest.find_first_not_of(bareKeyCharacters));
    return key.empty() ? std::nullopt : std::optional<std::string>(key);
}

std::optional<NSUserDefaultsValue> takeValue(std::string_view& rest) {
    if (rest.starts_with('"')) {
        return takeQuoted(rest);
    }
    std::string_view token = take(rest, rest.find_first_of(" \t#"));
    if (token == "true" || token == "false") {
        return NSNumber::numberWithBool(token == "true");
    }
    if (token.ends_with('u')) {
        token.remove_suffix(1);
        const auto number = wholeNumber<std::uint64_t>(token);
        return number ? std::optional(NSNumber::numberWithUnsignedLong(*number)) : std::nullopt;
    }
    if (const auto number = wholeNumber<std::int64_t>(token)) {
        return NSNumber::numberWithLong(*number);
    }
    const auto number = wholeNumber<double>(token);
    return number ? std::optional(NSNumber::numberWithDouble(*number)) : std::nullopt;
}

/// The entry on a line; none where the line can't be understood.
std::optional<Entry> parseLine(std::string_view line) {
    std::string_view rest = line;
    rest.remove_suffix(rest.ends_with('\n') ? 1 : 0);
    rest.remove_suffix(rest.ends_with('\r') ? 1 : 0);
    // On any line: what a line means must not depend on which lines before it are removed.
    take(rest, rest.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    takeBlanks(rest);
    auto key = takeKey(rest);
    takeBlanks(rest);
    if (!key || take(rest, 1) != "=") {
        return std::nullopt;
    }
    takeBlanks(rest);
    const std::string_view fromValue = rest;
    auto value = takeValue(rest);
    const std::string_view valueText = fromValue.substr(0, fromValue.size() - rest.size());
    takeBlanks(rest);
    if (!value || !(rest.empty() || rest.starts_with('#'))) {
        return std::nullopt;
    }
    return Entry{std::move(*key), std::move(*value), line, valueText};
}

/// Calls the visitor, in the text's order, for each line that can be understood.
template <typename Visit>
void forEachEntry(std::string_view text, const Visit& visit) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1);
        if (auto entry = parseLine(take(text, end + 1))) {
            visit(std::move(*entry));
        }
    }
}

/// What is not UTF-8 is escaped too, so that the file stays text to every editor.
std::string inQuotes(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = readUtf8(text, at);
        const std::size_t escape = escapedCharacters.find(text[at]);
        if (escape != std::string_view::npos) {
            result.append(1, '\\').append(1, escapeLetters[escape]);
        } else if (step.valid && step.character >= 0x20 && step.character != 0x7F) {
            result += text.substr(at, step.length);
        } else {
            const auto byte = static_cast<unsigned char>(text[at]);
            result.append("\\x").append(1, digits[byte >> 4]).append(1, digits[byte & 0xFu]);
        }
        at += step.length;
    }
    return result += '"';
}

template <typename Number>
std::string digitsOf(Number number) {
    // Enough for the shortest exact form of any double, which is longer than any integer.
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return {buffer.data(), end};
}

std::string textOfValue(const NSNumber& number) {
    switch (number.kind()) {
    case NSNumber::Kind::UnsignedLong:
        return digitsOf(number.unsignedLongValue()) + "u";
    case NSNumber::Kind::Long:
        return digitsOf(number.longValue());
    case NSNumber::Kind::Boolean:
        return number.boolValue() ? "true" : "false";
    case NSNumber::Kind::Double:
        break;
    }
    std::string text = digitsOf(number.doubleValue());
    // A whole number keeps a fraction, to be read back as a double ("inf" and "nan" hold an n).
    return text.find_first_of(".en") == std::string_view::npos ? text + ".0" : text;
}

std::string textOfValue(const NSUserDefaultsValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? inQuotes(*text) : textOfValue(std::get<NSNumber>(value));
}

std::string withoutKey(std::string_view text, std::string_view key) {
    std::string result;
    const char* kept = text.data();
    forEachEntry(text, [&](const Entry& entry) {
        if (entry.key == key) {
            result.append(kept, entry.line.data());
            kept = entry.line.data() + entry.line.size();
        }
    });
    return result.append(kept, text.data() + text.size());
}

std::string withLine(std::string_view text, std::string_view key, std::string_view valueText) {
    // The line end that the text uses, by its last complete line.
    const std::size_t end = text.rfind('\n');
    const bool windows = end != std::string_view::npos && end > 0 && text[end - 1] == '\r';
    const std::string_view lineEnd = windows ? "\r\n" : "\n";
    std::string result(text);
    if (!text.empty() && text.back() != '\n') {
        // Half a line end is completed: with another one before it, it would become the value's.
        result += text.back() == '\r' ? "\n" : lineEnd;
    }
    const bool bare =
        !key.empty() && key.find_first_not_of(bareKeyCharacters) == std::string_view::npos;
    result += bare ? std::string(key) : inQuotes(key);
    return result.append(" = ").append(valueText).append(lineEnd);
}

} // namespace

DefaultsEntries parseDefaultsText(std::string_view text) {
    DefaultsEntries entries;
    forEachEntry(text, [&](Entry&& entry) {
        entries.insert_or_assign(std::move(entry.key), std::move(entry.value));
    });
    return entries;
}

std::string editDefaultsText(std::string_view text, std::string_view key,
                             const std::optional<NSUserDefaultsValue>& value) {
    if (!value) {
        return withoutKey(text, key);
    }
    std::optional<std::string_view> old;
    forEachEntry(text, [&](const Entry& entry) {
        if (entry.key == key) {
            old = entry.valueText;
        }
    });
    if (!old) {
        return withLine(text, key, textOfValue(*value));
    }
    const auto begin = static_cast<std::size_t>(old->data() - text.data());
    return std::string(text).replace(begin, old->size(), textOfValue(*value));
}

} // namespace zel::inline v1
