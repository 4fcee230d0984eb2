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

namespace zel::inline v1 {

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

/// Lets an ending node's children go, however deep the tree below it is: the outermost node's end
/// ends them in a loop, and a node that this loop ends only hands over its own. The order is that
/// of nested destructors: a node, then what is below it, then its next sibling. Without memory for
/// the list the children end nested.
template <class Node>
void endChildren(const Node& node, std::vector<std::shared_ptr<Node>>& children) noexcept {
    using Nodes = std::vector<std::shared_ptr<Node>>;
    struct Loop {
        Nodes nodes;                  ///< still to end, the next one last
        const Node* ending = nullptr; ///< the one that the loop lets go of now
    };
    thread_local Loop* running = nullptr;
    if (children.empty()) {
        return;
    }
    if (running && running->ending == &node) {
        try {
            running->nodes.insert(running->nodes.end(), std::make_move_iterator(children.rbegin()),
                                  std::make_move_iterator(children.rend()));
        } catch (const std::bad_alloc&) {
        }
        return;
    }
    Loop loop;
    loop.nodes.swap(children);
    std::ranges::reverse(loop.nodes);
    Loop* const outer = std::exchange(running, &loop);
    while (!loop.nodes.empty()) {
        const std::shared_ptr<Node> next = std::move(loop.nodes.back());
        loop.nodes.pop_back();
        loop.ending = next.get();
    }
    running = outer;
}

} // namespace zel::inline v1
