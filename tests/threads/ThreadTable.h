// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <vector>

namespace zeltest {

/// What docs/threads.md says of one operation.
struct ThreadRow {
    std::string operation; ///< "ZelStyle::seed", or "alloc" for a function
    std::string thread;    ///< "any", "main" or "called"
    bool inHandlers = false;
    bool inDestructors = false;
};

struct ThreadTable {
    std::vector<ThreadRow> rows;
    std::set<std::string> values; ///< classes of which all is allowed
};

/// The tables; a row that isn't understood has no thread.
ThreadTable readThreadTable(const std::string& path);

/// The public operations that a header declares, named as in the table; a constructor or destructor
/// under its class's name. Written for headers that look like this project's.
std::set<std::string> readPublicOperations(const std::string& path);

} // namespace zeltest
