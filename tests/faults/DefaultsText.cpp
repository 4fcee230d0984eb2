// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/DefaultsText.h"

#include <fstream>
#include <iterator>

namespace zeltest {

std::optional<std::map<std::string, std::string>> readDefaultsText(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (!stream || !text.starts_with(foreignLines) || text.back() != '\n') {
        return std::nullopt;
    }
    std::map<std::string, std::string> entries;
    for (std::size_t at = sizeof foreignLines - 1; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        const std::string line = text.substr(at, end - at);
        const std::size_t mark = line.find(" = \"");
        if (mark == std::string::npos || line.size() < mark + 5 || line.back() != '"') {
            return std::nullopt;
        }
        const std::string value = line.substr(mark + 4, line.size() - mark - 5);
        if (!entries.emplace(line.substr(0, mark), value).second) {
            return std::nullopt;
        }
        at = end + 1;
    }
    return entries;
}

} // namespace zeltest
