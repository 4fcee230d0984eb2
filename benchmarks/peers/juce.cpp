// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"
#include "support/TreeShape.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>
#include <vector>

namespace zel::inline v1 {

namespace {

/// A component that hears of its looks.
class Listener : public juce::Component {
public:
    explicit Listener(std::size_t& calls) : calls_(calls) {}
    void lookAndFeelChanged() override { ++calls_; }

private:
    std::size_t& calls_;
};

/// Components in a tree; a component doesn't own its children.
struct Components {
    explicit Components(const std::vector<std::size_t>& parents) {
        nodes.push_back(std::make_unique<Listener>(calls));
        for (const std::size_t parent : parents) {
            nodes.push_back(std::make_unique<Listener>(calls));
            nodes[parent]->addChildComponent(*nodes.back());
        }
        calls = 0;
    }
    ~Components() {
        while (!nodes.empty()) { // children before their parents
            nodes.pop_back();
        }
    }
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    std::size_t calls = 0;
    std::vector<std::unique_ptr<Listener>> nodes;
};

void readColour(benchmark::State& state) {
    const juce::Label label;
    for (auto _ : state) {
        benchmark::DoNotOptimize(label.findColour(juce::Label::textColourId));
    }
}

void changeLooks(benchmark::State& state, Components& components, std::size_t node,
                 std::size_t expected) {
    for (auto _ : state) {
        components.calls = 0;
        components.nodes[node]->sendLookAndFeelChange();
        if (!reachedAll(state, components.calls, expected)) {
            return;
        }
    }
}

void switchAll(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Components components(parentsOfTree(size));
    changeLooks(state, components, 0, size + 1);
}

void changeSubtree(benchmark::State& state) {
    constexpr std::size_t subtreeSize = 1000;
    const auto size = static_cast<std::size_t>(state.range(0));
    Components components(parentsOfBranches(size / subtreeSize, subtreeSize));
    changeLooks(state, components, 1 + size / subtreeSize / 2 * subtreeSize, subtreeSize);
}

BENCHMARK(readColour)->Name("read_own/juce")->UseRealTime();
BENCHMARK(switchAll)
    ->Name("switch/juce")
    ->RangeMultiplier(10)
    ->Range(1000, 1'000'000)
    ->UseRealTime();
BENCHMARK(changeSubtree)->Name("subtree/juce")->Arg(100'000)->Arg(200'000)->UseRealTime();

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    const juce::ScopedJuceInitialiser_GUI toolkit;
    return zel::runBenchmarks(argc, argv);
}
