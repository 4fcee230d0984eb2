// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Round.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

struct Options {
    std::uint32_t processes = 100;
    std::uint32_t rounds = 20;
    std::uint64_t seed = 1;
    std::string folder = std::filesystem::temp_directory_path(); // where one for the run is made
};

Options optionsOf(int count, char** words) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const std::string name = words[i];
        const std::string value = i + 1 < count ? words[i + 1] : "";
        if (name == "--processes") {
            options.processes = static_cast<std::uint32_t>(std::stoul(value));
        } else if (name == "--rounds") {
            options.rounds = static_cast<std::uint32_t>(std::stoul(value));
        } else if (name == "--seed") {
            options.seed = std::stoull(value);
        } else if (name == "--folder") {
            options.folder = value;
        } else {
            throw std::invalid_argument("unknown option " + name);
        }
    }
    return options;
}

void printFigures(std::uint32_t rounds, const zeltest::Rounds& played, double seconds) {
    const zeltest::History& history = played.history();
    std::cout << rounds << " rounds in " << static_cast<int>(seconds) << " s: " << history.begun
              << " writes begun, " << history.acknowledged << " acknowledged, " << history.refused
              << " refused, " << history.cutShort << " cut short by death; " << played.leftovers()
              << " leftovers; the longest write took " << history.longest / 1'000'000 << " ms"
              << std::endl;
}

int run(const Options& options) {
    std::string folder = options.folder + "/writers-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("no folder in " + options.folder);
    }
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    zel::NSProcessInfo::setProcessName("writers");
    zeltest::Rounds rounds(folder + "/writers", options.processes, options.seed);
    const auto start = std::chrono::steady_clock::now();
    for (std::uint32_t round = 1; round <= options.rounds; ++round) {
        if (const auto wrong = rounds.play()) {
            std::cerr << "round " << round << " of seed " << options.seed << ", in " << folder
                      << ": " << *wrong << '\n';
            return 1;
        }
        if (round % 500 == 0 || round == options.rounds) {
            const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
            printFigures(round, rounds, spent.count());
        }
    }
    std::filesystem::remove_all(folder);
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
