// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Round.h"
#include "tests/support/CommandLine.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

struct Options {
    std::uint32_t processes = 100;
    std::uint32_t rounds = 20;
    std::uint64_t seed = 1;
    std::string folder = std::filesystem::temp_directory_path();
};

Options optionsOf(int count, char** words) {
    Options options;
    zeltest::CommandLine program(
        "Lets many processes write one defaults file at once, kills them at random "
        "points, and compares what the file then holds with what they said. Ends with "
        "0 where nothing was torn or lost, no write took longer than it may, and there "
        "was, for each round, a write that was acknowledged and one that was cut "
        "short; with 1 where not.");
    program.add_option("--processes", options.processes, "How many write at once")
        ->check(CLI::Range(1, 1000));
    program.add_option("--rounds", options.rounds, "How often they are started and killed")
        ->check(CLI::Range(1, 1'000'000));
    program.add_option("--seed", options.seed, "Where the random numbers begin");
    program.add_option("--folder", options.folder, "Where a folder for the run is made")
        ->check(CLI::ExistingDirectory);
    program.read(count, words);
    return options;
}

/// The library says that a writer waits two seconds for others; so much more may it take on a busy
/// machine, whose few processors a hundred writers share, that whoever waited twice is noticed.
constexpr std::chrono::nanoseconds longestWait = std::chrono::milliseconds(2000 + 1900);
/// And what a busy disk, of which nothing is stated, may take until the writer's own text is on it.
constexpr std::chrono::nanoseconds busyDisk = std::chrono::seconds(10);

/// Why the rounds, in which nothing went wrong, show nothing nevertheless, or what took too long.
std::optional<std::string> wrongIn(const zeltest::Figures& figures, std::uint32_t rounds) {
    if (figures.acknowledged < rounds) {
        return "hardly a write was acknowledged, so that none could be lost";
    }
    if (figures.cutShort < rounds) {
        return "hardly a writer was killed while it wrote, so that nothing could be torn";
    }
    if (figures.longestRefused > longestWait.count() ||
        figures.longestAcknowledged > (longestWait + busyDisk).count()) {
        return "a write took longer than it may";
    }
    return std::nullopt;
}

void print(std::uint32_t rounds, const zeltest::Figures& figures) {
    std::cout << rounds << " rounds: " << figures.begun << " writes begun, " << figures.acknowledged
              << " acknowledged, " << figures.refused << " refused, " << figures.cutShort
              << " cut short by death; " << figures.leftovers
              << " leftovers; the longest write that was acknowledged took "
              << figures.longestAcknowledged / 1'000'000 << " ms, the longest that was refused "
              << figures.longestRefused / 1'000'000 << " ms" << std::endl;
}

int run(const Options& options) {
    std::string folder = options.folder + "/writers-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("no folder in " + options.folder);
    }
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    zel::NSProcessInfo::setProcessName("writers");
    zeltest::Rounds rounds(folder + "/writers", options.processes, options.seed);
    for (std::uint32_t round = 1; round <= options.rounds; ++round) {
        if (const auto wrong = rounds.play()) {
            std::cerr << "round " << round << " of seed " << options.seed << ", in " << folder
                      << ": " << *wrong << '\n';
            return 1;
        }
        if (round % 500 == 0 || round == options.rounds) {
            print(round, rounds.figures());
        }
    }
    std::filesystem::remove_all(folder);
    if (const auto wrong = wrongIn(rounds.figures(), options.rounds)) {
        std::cerr << "seed " << options.seed << ": " << *wrong << '\n';
        return 1;
    }
    return 0;
}

} // namespace

int main(int count, char** words) {
    try {
        return run(optionsOf(count, words));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
