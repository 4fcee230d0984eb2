// SPDX-License-Identifier: Apache-2.0
// The library under threads, for as long as wanted.
#include "tests/support/CommandLine.h"
#include "tests/threads/Run.h"

#include <cstdio>
#include <exception>

namespace {

struct Options {
    std::uint64_t seconds = 60;
    std::uint64_t seed = 1;
};

Options optionsOf(int count, char** words) {
    Options options;
    zeltest::CommandLine program(
        "Has threads use the library in every way that its headers allow them, all at "
        "once. Says how often each operation was done and ends with 0 where nothing is "
        "amiss. Where something is, or threads are stuck, it says what and aborts.");
    program.add_option("--seconds", options.seconds, "For how long")
        ->check(CLI::Range(0, 1'000'000'000));
    program.add_option("--seed", options.seed, "What their choices are drawn from");
    program.read(count, words);
    return options;
}

void run(const Options& options) {
    std::uint64_t all = 0;
    for (const auto& [what, times] :
         zeltest::runThreads(std::chrono::seconds(options.seconds), options.seed)) {
        std::printf("%12llu  %s\n", static_cast<unsigned long long>(times), what.c_str());
        all += times;
    }
    std::printf("%12llu  operations, seed %llu: nothing is amiss\n",
                static_cast<unsigned long long>(all),
                static_cast<unsigned long long>(options.seed));
}

} // namespace

int main(int count, char** words) {
    try {
        run(optionsOf(count, words));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "threads_run: %s\n", failure.what());
        return 1;
    }
}
