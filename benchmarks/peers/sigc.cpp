// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"
#include "support/TreeShape.h"

#include <sigc++/sigc++.h>

#include <memory>
#include <vector>

namespace zel::inline v1 {

namespace {

using Signal = sigc::signal<void(int)>;

/// Disconnects its slots when it ends.
struct Owner : sigc::trackable {
    explicit Owner(std::size_t& calls_) : calls(calls_) {}
    void changed(int) { ++calls; }
    std::size_t& calls;
};

/// Owners allocated one by one, connected in another order.
struct Listeners {
    explicit Listeners(std::size_t size) {
        owners.reserve(size);
        for (std::size_t i = 0; i < size; ++i) {
            owners.push_back(std::make_unique<Owner>(calls));
        }
        shuffleListeners(owners);
        for (const auto& owner : owners) {
            signal.connect(sigc::mem_fun(*owner, &Owner::changed));
        }
    }
    Listeners(const Listeners&) = delete;
    Listeners& operator=(const Listeners&) = delete;

    std::size_t calls = 0;
    Signal signal;
    std::vector<std::unique_ptr<Owner>> owners;
};

void switchAll(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Listeners listeners(size);
    for (auto _ : state) {
        listeners.calls = 0;
        listeners.signal.emit(1);
        if (!reachedAll(state, listeners.calls, size)) {
            return;
        }
    }
}

void connectAndDisconnect(benchmark::State& state) {
    Listeners listeners(static_cast<std::size_t>(state.range(0)));
    Owner owner(listeners.calls);
    for (auto _ : state) {
        auto connection = listeners.signal.connect(sigc::mem_fun(owner, &Owner::changed));
        connection.disconnect();
    }
}

BENCHMARK(switchAll)
    ->Name("switch/sigc")
    ->RangeMultiplier(10)
    ->Range(1000, 1'000'000)
    ->UseRealTime();
BENCHMARK(connectAndDisconnect)->Name("connect/sigc")->Arg(1000)->Arg(100'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    return zel::runBenchmarks(argc, argv);
}
