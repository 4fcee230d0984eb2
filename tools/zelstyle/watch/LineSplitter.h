// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zel::tool {

/// Cuts what comes in pieces of any size into lines.
/// Owns: the pieces that make no line yet, at most one line's length beyond what was fed.
class LineSplitter {
public:
    /// Bytes of a line that are kept; the rest of a longer one is dropped.
    static constexpr std::size_t longestLine = 1024;

    void feed(std::string_view piece) { waiting_ += piece; }
    /// No more will come: what stands behind the last line end is a line as well.
    void finish() noexcept { finished_ = true; }

    /// The next line, without its end ("\n" or "\r\n"); none before it is complete.
    std::optional<std::string> next();
    [[nodiscard]] bool hasLine() const noexcept;

private:
    std::string waiting_;
    bool finished_ = false;
};

} // namespace zel::tool
