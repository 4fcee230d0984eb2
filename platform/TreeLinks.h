// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

namespace zel {
inline namespace v1 {

/// Raises where `node` is `place` or stands above it, so that putting it below `place` would close a
/// circle. `parentOf` answers a node's parent.
template <class Node, class ParentOf>
void requireNotBelow(const Node& node, const std::shared_ptr<NSObject>& place, ParentOf parentOf) {
    for (auto each = std::static_pointer_cast<Node>(place); each; each = parentOf(*each)) {
        if (each.get() == &node) {
            throw std::invalid_argument("a node can't be put below itself");
        }
    }
}

/// Takes one node out of its parent's children, the others keep their order.
template <class Node>
void eraseLink(std::vector<std::shared_ptr<Node>>& children, const Node& node) {
    const auto found =
        std::ranges::find_if(children, [&](const auto& each) { return each.get() == &node; });
    if (found != children.end()) {
        children.erase(found);
    }
}

} // namespace v1
} // namespace zel
