// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace zel::inline v1 {

/// The levels of every tree here, the root's included.
inline constexpr std::size_t treeDepth = 8;

/// For each node but the root its parent's number, parents before children. The root is number 0
/// and not counted: there are `size` others, `result[i]` is the parent of number `i + 1`. The tree
/// has as many levels as `treeDepth`, each wider than the one above by the same factor.
inline std::vector<std::size_t> parentsOfTree(std::size_t size) {
    std::vector<std::size_t> parents;
    parents.reserve(size);
    const double growth = std::pow(static_cast<double>(size), 1.0 / (treeDepth - 1));
    std::size_t aboveStart = 0;
    std::size_t aboveCount = 1;
    for (std::size_t level = 1; level < treeDepth; ++level) {
        const auto wanted = static_cast<std::size_t>(
            std::max(1.0, 0.8 * std::pow(growth, static_cast<double>(level))));
        const std::size_t left = size - parents.size();
        const std::size_t count = level + 1 == treeDepth ? left : std::min(left, wanted);
        const std::size_t start = parents.size() + 1;
        for (std::size_t i = 0; i < count; ++i) {
            parents.push_back(aboveStart + i % aboveCount);
        }
        aboveStart = start;
        aboveCount = count;
    }
    return parents;
}

/// The same for `branches` subtrees of `perBranch` nodes below one root. Number `1 + b * perBranch`
/// is the root of branch `b`; the levels are `treeDepth` all the same.
inline std::vector<std::size_t> parentsOfBranches(std::size_t branches, std::size_t perBranch) {
    std::vector<std::size_t> parents;
    parents.reserve(branches * perBranch);
    const double growth = std::pow(static_cast<double>(perBranch), 1.0 / (treeDepth - 2));
    for (std::size_t branch = 0; branch < branches; ++branch) {
        const std::size_t first = 1 + branch * perBranch;
        parents.push_back(0);
        std::size_t aboveStart = first;
        std::size_t aboveCount = 1;
        std::size_t made = 1;
        for (std::size_t level = 2; level < treeDepth; ++level) {
            const auto wanted = static_cast<std::size_t>(
                std::max(1.0, 0.8 * std::pow(growth, static_cast<double>(level - 1))));
            const std::size_t left = perBranch - made;
            const std::size_t count = level + 1 == treeDepth ? left : std::min(left, wanted);
            for (std::size_t i = 0; i < count; ++i) {
                parents.push_back(aboveStart + i % aboveCount);
            }
            aboveStart = first + made;
            aboveCount = count;
            made += count;
        }
    }
    return parents;
}

/// Puts listeners into the order in which they are registered: not that of their addresses, and the
/// same in every run.
template <class T>
void shuffleListeners(std::vector<T>& listeners) {
    std::mt19937 random(1);
    std::shuffle(listeners.begin(), listeners.end(), random);
}

} // namespace zel::inline v1
