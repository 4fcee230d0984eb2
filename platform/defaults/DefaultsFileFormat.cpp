// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFileFormat.h"

#include "platform/defaults/DefaultsFileLines.h"
#include "platform/text/Utf8.h"

#include <array>
#include <charconv>
#include <utility>

namespace zel {
inline namespace v1 {
namespace {

bool isPrintable(const Utf8Step& step) {
    return step.valid && step.character >= 0x20 && step.character != 0x7F;
}

void appendEscaped(std::string& to, unsigned char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    switch (byte) {
    case '\n':
        to += "\\n";
        return;
    case '\r':
        to += "\\r";
        return;
    case '\t':
        to += "\\t";
        return;
    default:
        to += "\\x";
        to += digits[byte >> 4];
        to += digits[byte & 0xFu];
    }
}

/// Text that is not UTF-8 is escaped too, so that the file stays text to every editor.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = readUtf8(text, at);
        if (text[at] == '"' || text[at] == '\\') {
            result += '\\';
            result += text[at];
        } else if (isPrintable(step)) {
            result += text.substr(at, step.length);
        } else {
            appendEscaped(result, static_cast<unsigned char>(text[at]));
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

std::string textOf(const NSNumber& number) {
    switch (number.kind()) {
    case NSNumber::Kind::UnsignedLong:
        return digitsOf(number.unsignedLongValue()) + "u";
    case NSNumber::Kind::Long:
        return digitsOf(number.longValue());
    case NSNumber::Kind::Bool:
        return number.boolValue() ? "true" : "false";
    case NSNumber::Kind::Double:
        break;
    }
    std::string text = digitsOf(number.doubleValue());
    // A whole number keeps a fraction, to be read back as a double ("inf" and "nan" hold an n).
    if (text.find_first_of(".en") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string textOf(const NSUserDefaultsValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? quoted(*text) : textOf(std::get<NSNumber>(value));
}

std::string keyText(std::string_view key) {
    return isBareDefaultsKey(key) ? std::string(key) : quoted(key);
}

/// The line end that the text uses, by its last complete line.
std::string_view lineEndOf(std::string_view text) {
    const std::size_t end = text.rfind('\n');
    const bool carriageReturn = end != std::string_view::npos && end > 0 && text[end - 1] == '\r';
    return carriageReturn ? "\r\n" : "\n";
}

std::string withoutKey(std::string_view text, std::string_view key) {
    std::string result;
    std::size_t kept = 0;
    forEachDefaultsLine(text, [&](DefaultsFileLine&& line) {
        if (line.key == key) {
            result += text.substr(kept, line.begin - kept);
            kept = line.end;
        }
    });
    return result += text.substr(kept);
}

} // namespace

DefaultsFileEntries parseDefaultsFile(std::string_view text) {
    DefaultsFileEntries entries;
    forEachDefaultsLine(text, [&](DefaultsFileLine&& line) {
        entries.insert_or_assign(std::move(line.key), std::move(line.value));
    });
    return entries;
}

std::string editDefaultsFile(std::string_view text, std::string_view key,
                             const std::optional<NSUserDefaultsValue>& value) {
    if (!value) {
        return withoutKey(text, key);
    }
    std::optional<std::pair<std::size_t, std::size_t>> counting;
    forEachDefaultsLine(text, [&](DefaultsFileLine&& line) {
        if (line.key == key) {
            counting = {line.valueBegin, line.valueEnd};
        }
    });
    std::string result(text);
    if (counting) {
        return result.replace(counting->first, counting->second - counting->first, textOf(*value));
    }
    const std::string_view lineEnd = lineEndOf(text);
    if (!text.empty() && text.back() != '\n') {
        // Half a line end is completed: with another one before it, it would become the value's.
        result += text.back() == '\r' ? "\n" : lineEnd;
    }
    return result.append(keyText(key)).append(" = ").append(textOf(*value)).append(lineEnd);
}

} // namespace v1
} // namespace zel
