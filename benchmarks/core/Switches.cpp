// SPDX-License-Identifier: Apache-2.0
#include "core/ListeningTree.h"
#include "support/Program.h"

#include <optional>
#include <utility>

namespace zel::inline v1 {

namespace {

ListeningTree& treeOf(const benchmark::State& state) {
    return sharedTree("whole", parentsOfTree, static_cast<std::size_t>(state.range(0)));
}

// Every listener gets another style and is called.
void switchOurs(benchmark::State& state) {
    ListeningTree& tree = treeOf(state);
    const auto domain = ZelStyleDomain::defaultDomain();
    const auto light = domain->lightScheme();
    const auto dark = domain->darkScheme();
    bool toDark = true;
    for (auto _ : state) {
        domain->setCurrentScheme(toDark ? dark : light);
        toDark = !toDark;
        if (!reachedAll(state, tree.takeCalls(), tree.size())) {
            return;
        }
    }
}

void switchBaseline(benchmark::State& state) {
    ListeningTree& tree = treeOf(state);
    for (auto _ : state) {
        tree.baseline().notify(1);
        if (!reachedAll(state, tree.takeCalls(), tree.size())) {
            return;
        }
    }
}

// Every listener is asked about and none has another style: nobody may be called.
void unchangedOurs(benchmark::State& state) {
    ListeningTree& tree = treeOf(state);
    const auto domain = ZelStyleDomain::defaultDomain();
    for (auto _ : state) {
        domain->notifyForStyleChangeOf(nullptr, {});
        if (!reachedAll(state, tree.takeCalls(), 0)) {
            return;
        }
    }
}

// A listener is pinned to a scheme, or let go, before each switch: what every listener's node
// remembers has to be found again.
void pinAndSwitchOurs(benchmark::State& state) {
    ListeningTree& tree = treeOf(state);
    const auto domain = ZelStyleDomain::defaultDomain();
    const auto light = domain->lightScheme();
    const auto dark = domain->darkScheme();
    const auto& pinned = tree.node(tree.size());
    bool toDark = true;
    for (auto _ : state) {
        pinned->setCustomZelStyleSchemeIdentifier(toDark ? std::optional("light") : std::nullopt);
        domain->setCurrentScheme(toDark ? dark : light);
        toDark = !toDark;
        static_cast<void>(tree.takeCalls());
    }
    pinned->setCustomZelStyleSchemeIdentifier(std::nullopt);
    domain->setCurrentScheme(light);
    static_cast<void>(tree.takeCalls());
}

// A scheme gets another style before each switch: every style has to be looked up again.
void addStyleAndSwitchOurs(benchmark::State& state) {
    ListeningTree& tree = treeOf(state);
    const auto domain = ZelStyleDomain::defaultDomain();
    const auto light = domain->lightScheme();
    const auto dark = domain->darkScheme();
    const auto added =
        light->styleForIdentifier("main")->inheritedStyleWithChanges(nullptr, "added", light);
    bool toDark = true;
    for (auto _ : state) {
        light->addStyle(added);
        domain->setCurrentScheme(toDark ? dark : light);
        toDark = !toDark;
        if (!reachedAll(state, tree.takeCalls(), tree.size())) {
            return;
        }
    }
    light->removeStyle(added);
    domain->setCurrentScheme(light);
    static_cast<void>(tree.takeCalls());
}

// Arguments outermost, so that the benchmarks of a size share their tree.
[[maybe_unused]] const bool registered = [] {
    for (const std::int64_t size : {1000, 10'000, 100'000, 1'000'000}) {
        for (const auto& [name, run] :
             {std::pair{"switch/ours", &switchOurs}, std::pair{"switch/baseline", &switchBaseline},
              std::pair{"unchanged/ours", &unchangedOurs},
              std::pair{"pin_and_switch/ours", &pinAndSwitchOurs},
              std::pair{"add_style_and_switch/ours", &addStyleAndSwitchOurs}}) {
            benchmark::RegisterBenchmark(name, run)->Arg(size)->UseRealTime();
        }
    }
    return true;
}();

} // namespace

} // namespace zel::inline v1
