// SPDX-License-Identifier: Apache-2.0
#include "core/UpdatedStyle.h"
#include "support/Program.h"

#include "core/ListeningTree.h"

namespace zel::inline v1 {

namespace {

// A style with `size` child styles, each of which computes a colour from it, is updated; `size`
// listeners have it.
void updateOurs(benchmark::State& state) {
    endSharedTree();
    UpdatedStyle updated(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        updated.update();
        if (!reachedAll(state, updated.takeChildCalls(), updated.size()) ||
            !reachedAll(state, updated.takeListenerCalls(), updated.size())) {
            return;
        }
    }
}

BENCHMARK(updateOurs)->Name("update/ours")->Arg(10'000)->Arg(20'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1
