// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Baseline.h"
#include "support/TreeShape.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace zel::inline v1 {

/// Views in a tree, each of which listens for its style, and the baseline's listeners for the same
/// views in the same order, so that both find the same memory.
/// Owns: the root, and the views through it. Refers to: the default domain, which has the listeners
/// as long as the views live; only one tree may exist at a time, or each would hear of the other.
/// Threads: the main thread.
class ListeningTree {
public:
    /// A tree by the parents of its nodes, as TreeShape.h gives them.
    explicit ListeningTree(const std::vector<std::size_t>& parents);
    ListeningTree(const ListeningTree&) = delete;
    ListeningTree& operator=(const ListeningTree&) = delete;
    ~ListeningTree() = default;

    [[nodiscard]] std::size_t size() const noexcept { return nodes_.size() - 1; }
    /// A node by its number; 0 is the root, which listens to nothing.
    [[nodiscard]] const std::shared_ptr<NSView>& node(std::size_t number) const {
        return nodes_[number];
    }
    [[nodiscard]] const Baseline<NSView>& baseline() const noexcept { return baseline_; }

    /// Calls of the tree's handlers since this was asked last, the baseline's included.
    [[nodiscard]] std::size_t takeCalls() noexcept {
        const std::size_t calls = calls_;
        calls_ = 0;
        return calls;
    }

private:
    std::size_t calls_ = 0;
    std::vector<std::shared_ptr<NSView>> nodes_;
    Baseline<NSView> baseline_;
};

/// The tree of that name, made by `make` unless it is the one there is: the benchmarks of one size
/// follow each other and share it, since building a million views takes longer than notifying them.
/// Leaves the light scheme current.
ListeningTree& sharedTree(const std::string& name, std::vector<std::size_t> (*make)(std::size_t),
                          std::size_t size);

/// Ends the shared tree, for a benchmark that wants the domain to itself.
void endSharedTree();

} // namespace zel::inline v1
