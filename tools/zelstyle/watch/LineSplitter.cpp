// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/LineSplitter.h"

#include <algorithm>

namespace zel::tool {

bool LineSplitter::hasLine() const noexcept {
    return waiting_.find('\n') != std::string::npos || (finished_ && !waiting_.empty());
}

std::optional<std::string> LineSplitter::next() {
    const std::size_t end = waiting_.find('\n');
    if (end == std::string::npos && !finished_) {
        // One byte more than is kept still tells a line that is too long from one that is not.
        waiting_.resize(std::min(waiting_.size(), longestLine + 1));
        return std::nullopt;
    }
    if (waiting_.empty()) {
        return std::nullopt;
    }
    std::string line = waiting_.substr(0, std::min(end, longestLine + 1));
    waiting_.erase(0, end == std::string::npos ? end : end + 1);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

} // namespace zel::tool
