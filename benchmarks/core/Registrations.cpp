// SPDX-License-Identifier: Apache-2.0
#include "core/ListeningTree.h"
#include "support/Program.h"

namespace zel::inline v1 {

namespace {

// One listener comes and goes while `size` others stay. Coming includes the call that every
// registration makes.
void connectOurs(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    ListeningTree& tree = sharedTree("whole", parentsOfTree, size);
    const auto view = alloc<NSView>();
    tree.node(size)->addSubview(view);
    std::size_t calls = 0;
    std::size_t rounds = 0;
    for (auto _ : state) {
        view->registerStyleableChangeHandler(
            [&calls](const auto&, const auto&, ZelStyleChangeEvent) { ++calls; });
        view->unregisterStyleableChangeHandlers();
        ++rounds;
    }
    view->removeFromSuperview();
    reachedAll(state, calls, rounds);
}

BENCHMARK(connectOurs)->Name("connect/ours")->Arg(1000)->Arg(100'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1
