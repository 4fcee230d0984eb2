// SPDX-License-Identifier: Apache-2.0
// The library under threads, for as long as wanted.
#include "tests/threads/Run.h"

#include <charconv>
#include <cstdio>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace {

constexpr const char* usage =
    "usage: zelstylekit_threads [--seconds N] [--seed N]\n"
    "\n"
    "Has threads use the library in every way that its headers allow "
    "them, all at once.\n"
    "\n"
    "  --seconds N  for how long (60)\n"
    "  --seed N     what their choices are drawn from (1)\n"
    "  --help       say this\n"
    "\n"
    "Says how often each operation was done and ends with 0 where nothing "
    "is amiss. Where\n"
    "something is, or threads are stuck, it says what and aborts.\n";

struct Options {
    std::uint64_t seconds = 60;
    std::uint64_t seed = 1;
};

/// So long a time that nothing overflows, and longer than anybody waits.
constexpr std::uint64_t mostSeconds = std::numeric_limits<std::int32_t>::max();

std::uint64_t numberFrom(std::string_view name, std::string_view word, std::uint64_t most) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || number > most) {
        throw std::invalid_argument(std::string(name) + " takes a whole number from 0 to " +
                                    std::to_string(most) + ", not \"" + std::string(word) + "\"");
    }
    return number;
}

/// None where help is asked for.
std::optional<Options> optionsOf(int count, char** words) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const std::string_view name = words[i];
        if (name == "--help") {
            return std::nullopt;
        }
        if (name != "--seconds" && name != "--seed") {
            throw std::invalid_argument("unknown option \"" + std::string(name) + "\"\n\n" + usage);
        }
        if (i + 1 == count) {
            throw std::invalid_argument(std::string(name) + " takes a number");
        }
        if (name == "--seed") {
            options.seed = numberFrom(name, words[i + 1], UINT64_MAX);
        } else {
            options.seconds = numberFrom(name, words[i + 1], mostSeconds);
        }
    }
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
        if (const auto options = optionsOf(count, words)) {
            run(*options);
        } else {
            std::fputs(usage, stdout);
        }
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "zelstylekit_threads: %s\n", failure.what());
        return 2;
    }
}
