// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

/// Raises where `node` is `place` or stands above it, so that putting it below `place` would close
/// a circle. `parentOf` answers a node's parent.
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

/// Lets an ending node's children go, however deep the tree below it is: the outermost destructor
/// on the thread ends them in a loop, and those that run meanwhile only hand over their own. The
/// order is that of nested destructors: a node, then what is below it, then its next sibling.
/// Without memory for the list the children end nested.
template <class Node>
void endChildren(std::vector<std::shared_ptr<Node>>& children) noexcept {
    using Nodes = std::vector<std::shared_ptr<Node>>;
    thread_local Nodes* ending = nullptr; // the next node last
    if (children.empty()) {
        return;
    }
    if (ending) {
        try {
            ending->insert(ending->end(), std::make_move_iterator(children.rbegin()),
                           std::make_move_iterator(children.rend()));
        } catch (const std::bad_alloc&) {
        }
        return;
    }
    Nodes nodes;
    nodes.swap(children);
    std::ranges::reverse(nodes);
    ending = &nodes;
    while (!nodes.empty()) {
        const std::shared_ptr<Node> node = std::move(nodes.back());
        nodes.pop_back();
    }
    ending = nullptr;
}

} // namespace v1
} // namespace zel
