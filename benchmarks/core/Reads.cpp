// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <string>
#include <unordered_map>

namespace zel::inline v1 {

namespace {

constexpr auto customKey = "exampleAccentColor";

const std::shared_ptr<ZelStyle>& ownStyle() {
    static const std::shared_ptr<ZelStyle> style = [] {
        auto main = ZelStyleDomain::defaultDomain()->lightScheme()->styleForIdentifier("main");
        main->setValue(ZelAttributeValue(NSColor::whiteColor()), customKey);
        return main;
    }();
    return style;
}

// A style without a value of its own.
const std::shared_ptr<ZelStyle>& inheritingStyle() {
    static const std::shared_ptr<ZelStyle> style = alloc<ZelStyle>()->initWithIdentifier(
        "reader", ZelStyleDomain::defaultDomain()->lightScheme(), ownStyle());
    return style;
}

void readTyped(benchmark::State& state, const std::shared_ptr<ZelStyle>& (*styleOf)()) {
    const ZelStyle& style = *styleOf();
    if (!style.backgroundColor()) {
        state.SkipWithError("no background colour");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(style.backgroundColor());
    }
}

// What two threads cost each other on this machine where they share nothing.
void readApart(benchmark::State& state) {
    const auto made = alloc<ZelStyle>()->initWithIdentifier(
        "apart", ZelStyleDomain::defaultDomain()->lightScheme(), ownStyle());
    const ZelStyle& style = *made;
    if (!style.backgroundColor()) {
        state.SkipWithError("no background colour");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(style.backgroundColor());
    }
}

void readByKey(benchmark::State& state, const char* name) {
    const ZelStyle& style = *ownStyle();
    const std::string key = name;
    if (!style.effectiveValueForAttribute(key)) {
        state.SkipWithError("no such value");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(style.effectiveValueForAttribute(key));
    }
}

// One find in a map of as many values, with the string ready.
void readFromMap(benchmark::State& state, const char* name) {
    std::unordered_map<std::string, ZelAttributeValue> values;
    const auto merged = ownStyle()->effectiveValues();
    values.insert(merged->begin(), merged->end());
    const std::string key = name;
    if (values.find(key) == values.end()) {
        state.SkipWithError("no such value");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(values.find(key));
    }
}

// Two threads read the same style: were it locked, or counted, they would wait for each other.
BENCHMARK_CAPTURE(readTyped, own, ownStyle)
    ->Name("read_own/ours")
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK_CAPTURE(readTyped, inherited, inheritingStyle)
    ->Name("read_inherited/ours")
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(readApart)->Name("read_apart/ours")->Threads(2)->UseRealTime();
BENCHMARK_CAPTURE(readByKey, predefined, "backgroundColor")
    ->Name("read_key_predefined/ours")
    ->UseRealTime();
BENCHMARK_CAPTURE(readFromMap, predefined, "backgroundColor")
    ->Name("read_key_predefined/baseline")
    ->UseRealTime();
BENCHMARK_CAPTURE(readByKey, custom, customKey)->Name("read_key_custom/ours")->UseRealTime();
BENCHMARK_CAPTURE(readFromMap, custom, customKey)->Name("read_key_custom/baseline")->UseRealTime();

} // namespace

} // namespace zel::inline v1
