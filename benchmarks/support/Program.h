// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <thread>

namespace zel::inline v1 {

// A benchmark is called "work/contender" or "work/contender/size"; the report reads these names.

/// Starts and joins a thread. To be called before anything else: libstdc++ leaves out the atomic
/// instructions of shared pointers and locks while a process has never had a second thread, which
/// no desktop application is.
inline void becomeMultithreaded() {
    std::thread([] {}).join();
}

/// Runs the registered benchmarks; what `main` returns.
inline int runBenchmarks(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

/// Ends the benchmark with an error unless every listener was reached, and none twice.
/// False where the caller is to stop.
inline bool reachedAll(benchmark::State& state, std::size_t calls, std::size_t expected) {
    if (calls == expected) {
        return true;
    }
    const std::string error =
        std::to_string(calls) + " calls instead of " + std::to_string(expected);
    state.SkipWithError(error.c_str());
    return false;
}

} // namespace zel::inline v1
