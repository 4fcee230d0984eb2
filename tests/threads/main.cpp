// SPDX-License-Identifier: Apache-2.0
// The library under threads, for as long as wanted.
// usage: zelstylekit_threads [--seconds N] [--seed N]
#include "tests/threads/Run.h"

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace {

struct Options {
    std::uint64_t seconds = 60;
    std::uint64_t seed = 1;
};

Options optionsOf(int count, char** words) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const std::string name = words[i];
        if (i + 1 == count || (name != "--seconds" && name != "--seed")) {
            throw std::invalid_argument("usage: zelstylekit_threads [--seconds N] [--seed N]");
        }
        (name == "--seed" ? options.seed : options.seconds) = std::stoull(words[i + 1]);
    }
    return options;
}

} // namespace

int main(int count, char** words) {
    try {
        const Options options = optionsOf(count, words);
        std::uint64_t all = 0;
        for (const auto& [what, times] :
             zeltest::runThreads(std::chrono::seconds(options.seconds), options.seed)) {
            std::printf("%12llu  %s\n", static_cast<unsigned long long>(times), what.c_str());
            all += times;
        }
        std::printf("%12llu  operations, seed %llu: nothing is amiss\n",
                    static_cast<unsigned long long>(all),
                    static_cast<unsigned long long>(options.seed));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 2;
    }
}
