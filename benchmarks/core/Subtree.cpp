// SPDX-License-Identifier: Apache-2.0
#include "core/ListeningTree.h"
#include "support/Program.h"

#include <array>
#include <string_view>

namespace zel::inline v1 {

namespace {

constexpr std::size_t subtreeSize = 1000;

std::vector<std::size_t> branchesOf(std::size_t size) {
    return parentsOfBranches(size / subtreeSize, subtreeSize);
}

// The root of one branch gets another style identifier, to and fro: all below it change style. The
// branch has 1000 listeners, whatever the size of the tree, which is 1 % of 100,000 and 0.5 % of
// twice as many: what is outside should not matter.
void subtreeOurs(benchmark::State& state) {
    const auto domain = ZelStyleDomain::defaultDomain();
    const auto light = domain->lightScheme();
    constexpr std::array<std::string_view, 2> identifiers{"first", "second"};
    for (const auto identifier : identifiers) {
        light->styleForIdentifier("main")->inheritedStyleWithChanges(nullptr, identifier, light);
    }
    ListeningTree& tree =
        sharedTree("branches", branchesOf, static_cast<std::size_t>(state.range(0)));
    const auto& branch = tree.node(1 + tree.size() / subtreeSize / 2 * subtreeSize);
    // An earlier run may have ended at the identifier that this one would begin with.
    branch->setCustomZelStyleIdentifier(std::nullopt);
    static_cast<void>(tree.takeCalls());
    std::size_t next = 0;
    for (auto _ : state) {
        branch->setCustomZelStyleIdentifier(identifiers[next]);
        next = 1 - next;
        if (!reachedAll(state, tree.takeCalls(), subtreeSize)) {
            return;
        }
    }
}

BENCHMARK(subtreeOurs)->Name("subtree/ours")->Arg(100'000)->Arg(200'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1
