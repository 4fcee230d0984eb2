// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/terminal/Message.h"

#include <algorithm>
#include <cstdio>

namespace zel::tool {
namespace {

constexpr std::size_t longestQuote = 60;

bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

} // namespace

std::string quotable(std::string_view text) {
    std::string quoted(text.substr(0, longestQuote));
    std::ranges::replace_if(quoted, isControl, '?');
    if (text.size() > longestQuote) {
        quoted += "...";
    }
    return quoted;
}

void printMessage(std::string_view text) {
    std::string line = "zelstyle: ";
    line += text;
    std::ranges::replace_if(line, isControl, '?');
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr); // unbuffered: the whole line at once
}

} // namespace zel::tool
