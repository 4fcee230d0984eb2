// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyle.h>

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace zelfuzz {

using Value = zel::ZelAttributeValue;

/// A style and three that inherit from it, each from the one before it; and a plain model of what
/// they hold: own values, and merged ones for as long as nothing drops them.
class StyleChain {
public:
    static constexpr std::size_t length = 4;

    StyleChain();

    /// Writes a value, the null marker for nil.
    void set(std::size_t style, const std::string& key, const Value& value);
    /// Writes it in an update, which is accepted or cancelled.
    void update(std::size_t style, const std::string& key, const Value& value, bool accepted);

    /// Whether every way of reading a key of a style gives every bit of what the model has.
    void check(std::size_t style, const std::string& key);
    /// The same for every key that was written, of every style; and that there are no others.
    void checkAll();

private:
    using Values = std::map<std::string, Value>;

    struct Node {
        std::shared_ptr<zel::ZelStyle> style;
        bool follows = false; ///< its parent's updates
        Values own;
        std::optional<Values> merged;
    };

    const Values& mergedOf(std::size_t style);
    void checkTyped(std::size_t style);

    std::array<Node, length> nodes_;
    std::set<std::string> written_;
};

} // namespace zelfuzz
