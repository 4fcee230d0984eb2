// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/ThreadTable.h"

#include <fstream>
#include <sstream>

namespace zeltest {
namespace {

std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(" \n");
    const auto end = text.find_last_not_of(" \n");
    return begin == std::string::npos ? std::string() : text.substr(begin, end - begin + 1);
}

/// What stands between backquotes.
std::vector<std::string> namesIn(const std::string& text) {
    std::vector<std::string> names;
    for (auto begin = text.find('`'); begin != std::string::npos; begin = text.find('`', begin)) {
        const auto end = text.find('`', begin + 1);
        names.push_back(text.substr(begin + 1, end - begin - 1));
        begin = end + 1;
    }
    return names;
}

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        cells.push_back(trimmed(cell));
    }
    return cells;
}

} // namespace

ThreadTable readThreadTable(const std::string& path) {
    ThreadTable table;
    std::ifstream file(path);
    std::string heading;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("#")) {
            heading = line.substr(line.find_last_of(' ') + 1);
        } else if (heading == "Values") {
            for (const std::string& name : namesIn(line)) {
                table.values.insert(name);
            }
        } else if (line.starts_with("| `")) {
            const std::vector<std::string> cells = cellsOf(line);
            const bool isWhole = cells.size() == 4;
            for (const std::string& name : namesIn(cells.front())) {
                table.rows.push_back({heading == "Functions" ? name : heading + "::" + name,
                                      isWhole ? cells[1] : "", isWhole && cells[2] == "yes",
                                      isWhole && cells[3] == "yes"});
            }
        }
    }
    return table;
}

} // namespace zeltest
