// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"
#include "support/TreeShape.h"

#include <boost/signals2.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <vector>

namespace zel::inline v1 {

namespace {

using Signal = boost::signals2::signal<void(int)>;

struct Owner {
    char content[64] = {};
};

/// Owners allocated one by one, connected in another order, each tracked by its slot.
struct Listeners {
    explicit Listeners(std::size_t size) {
        owners.reserve(size);
        for (std::size_t i = 0; i < size; ++i) {
            owners.push_back(boost::make_shared<Owner>());
        }
        shuffleListeners(owners);
        for (const auto& owner : owners) {
            signal.connect(Signal::slot_type([this](int) { ++calls; }).track(owner));
        }
    }
    Listeners(const Listeners&) = delete;
    Listeners& operator=(const Listeners&) = delete;

    std::size_t calls = 0;
    std::vector<boost::shared_ptr<Owner>> owners;
    Signal signal;
};

void switchAll(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Listeners listeners(size);
    for (auto _ : state) {
        listeners.calls = 0;
        listeners.signal(1);
        if (!reachedAll(state, listeners.calls, size)) {
            return;
        }
    }
}

// Connects and disconnects; unlike a registration with the library, nothing is called.
void connectAndDisconnect(benchmark::State& state) {
    Listeners listeners(static_cast<std::size_t>(state.range(0)));
    const auto owner = boost::make_shared<Owner>();
    for (auto _ : state) {
        auto connection = listeners.signal.connect(
            Signal::slot_type([&listeners](int) { ++listeners.calls; }).track(owner));
        connection.disconnect();
    }
}

BENCHMARK(switchAll)
    ->Name("switch/signals2")
    ->RangeMultiplier(10)
    ->Range(1000, 1'000'000)
    ->UseRealTime();
BENCHMARK(connectAndDisconnect)->Name("connect/signals2")->Arg(1000)->Arg(100'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    return zel::runBenchmarks(argc, argv);
}
