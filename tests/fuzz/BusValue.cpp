// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/BusValue.h"

#include <algorithm>

namespace zelfuzz {
namespace {

constexpr int deepest = 40; // more than the bus allows
constexpr std::string_view integers = "ybnqiuxt";
constexpr std::string_view texts = "sog";

/// The parts of a container up to the word that ends it.
std::vector<BusValue> partsUpTo(char end, Script& script, int depth) {
    std::vector<BusValue> parts;
    while (script.hasWord()) {
        Script ahead = script;
        if (ahead.letter() == end) {
            script = ahead;
            break;
        }
        if (auto part = BusValue::read(script, depth + 1)) {
            parts.push_back(*std::move(part));
        }
    }
    return parts;
}

void keepThoseLikeTheFirst(std::vector<BusValue>& parts) {
    if (!parts.empty()) {
        const std::string first = parts.front().signature();
        std::erase_if(parts, [&](const BusValue& part) { return part.signature() != first; });
    }
}

bool appendParts(const BusValue& value, sd_bus_message* message) {
    return std::ranges::all_of(value.parts,
                               [&](const BusValue& part) { return part.appendTo(message); });
}

/// The signature inside a container.
std::string contentsOf(const BusValue& value) {
    const std::string whole = value.signature();
    switch (value.type) {
    case 'v':
        return value.parts.front().signature();
    case 'a':
        return whole.substr(1);
    default:
        return whole.substr(1, whole.size() - 2);
    }
}

bool appendContainer(const BusValue& value, sd_bus_message* message) {
    char type = value.type;
    if (type == '(' || type == '{') {
        type = type == '(' ? SD_BUS_TYPE_STRUCT : SD_BUS_TYPE_DICT_ENTRY;
    }
    // A structure of nothing is no value; sd-bus sends one, and drops what it receives of it.
    return !(value.type == '(' && value.parts.empty()) &&
           sd_bus_message_open_container(message, type, contentsOf(value).c_str()) >= 0 &&
           appendParts(value, message) && sd_bus_message_close_container(message) >= 0;
}

/// What a basic value of one of the types stands at, as sd-bus takes it.
bool appendInteger(const BusValue& value, sd_bus_message* message) {
    const auto append = [&](auto number) {
        return sd_bus_message_append_basic(message, value.type, &number) >= 0;
    };
    switch (value.type) {
    case 'y':
        return append(static_cast<std::uint8_t>(value.integer));
    case 'n':
    case 'q':
        return append(static_cast<std::uint16_t>(value.integer));
    case 'b':
    case 'i':
    case 'u':
        return append(static_cast<std::uint32_t>(value.integer));
    default:
        return append(value.integer);
    }
}

} // namespace

std::optional<BusValue> BusValue::read(Script& script, int depth) {
    BusValue value;
    value.type = script.letter();
    if (integers.find(value.type) != std::string_view::npos) {
        value.integer = script.integer();
        return value;
    }
    if (texts.find(value.type) != std::string_view::npos) {
        value.text = script.text();
        return value;
    }
    if (value.type == 'd') {
        value.number = script.number();
        return value;
    }
    if (depth >= deepest) {
        return std::nullopt;
    }
    if (value.type == 'v') {
        if (auto part = read(script, depth + 1)) {
            value.parts.push_back(*std::move(part));
            return value;
        }
        return std::nullopt;
    }
    if (value.type != '(' && value.type != 'a' && value.type != '{') {
        return std::nullopt;
    }
    value.parts = partsUpTo(value.type == '(' ? ')' : value.type == 'a' ? '.' : '}', script, depth);
    if (value.type == 'a') {
        keepThoseLikeTheFirst(value.parts);
    }
    return value;
}

std::vector<BusValue> BusValue::readAll(Script& script) {
    std::vector<BusValue> values;
    while (script.hasWord()) {
        if (auto value = read(script)) {
            values.push_back(*std::move(value));
        }
    }
    return values;
}

std::string BusValue::signature() const {
    if (type == 'a') {
        return parts.empty() ? "as" : 'a' + parts.front().signature();
    }
    std::string result(1, type);
    if (type == '(' || type == '{') {
        for (const BusValue& part : parts) {
            result += part.signature();
        }
        result += type == '(' ? ')' : '}';
    }
    return result;
}

bool BusValue::appendTo(sd_bus_message* message) const {
    if (integers.find(type) != std::string_view::npos) {
        return appendInteger(*this, message);
    }
    if (texts.find(type) != std::string_view::npos) {
        // A NUL would end it early: what is remembered and what is sent would differ.
        return text.find('\0') == std::string::npos &&
               sd_bus_message_append_basic(message, type, text.c_str()) >= 0;
    }
    return type == 'd' ? sd_bus_message_append_basic(message, type, &number) >= 0
                       : appendContainer(*this, message);
}

} // namespace zelfuzz
