// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"
#include "tests/model/LibraryKit.h"
#include "tests/support/CommandLine.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zeltest;

struct Options {
    std::uint64_t seed = 1;
    std::uint64_t operations = 1'000'000;
    bool firstSetup = false;
    bool libraryOnly = false;
    std::string file; // played instead of scripts at random
};

Options optionsOf(int count, const char* const* words) {
    Options options;
    CommandLine program(
        "Plays scripts made of random bytes on the library and on a plain model of it, and "
        "compares the two after each step. Ends with 1, and prints what differs, where they "
        "differ or a lock is left. The script's bytes stay in a file then, and where the process "
        "crashes or hangs. Given that file, it prints the script before it plays it. libFuzzer "
        "makes it shorter: fuzz_model -minimize_crash=1 -runs=100000 FILE, of the preset asan.");
    program.add_option("FILE", options.file, "One script's bytes, played instead of random ones")
        ->check(CLI::ExistingFile);
    program.add_option("--seed", options.seed, "The first script's; the next one's is one more");
    program.add_option("--operations", options.operations, "How many are played at least");
    program.add_flag("--first-setup", options.firstSetup,
                     "Each script has a process of its own, in which nothing was set up");
    program.add_flag("--library-only", options.libraryOnly,
                     "Compares nothing, and looks for left locks and ended processes alone");
    program
        .add_option("--mistake", LibraryKit::mistake,
                    "One that the library's side makes, to show that it is found")
        ->transform(CLI::CheckedTransformer(
            std::map<std::string, Mistake>{{"drain", Mistake::ForgottenDrain},
                                           {"lock", Mistake::LockKept},
                                           {"crash", Mistake::Crash}}));
    program.read(count, words);
    return options;
}

std::string draw(std::uint64_t seed) {
    constexpr std::size_t length = 900; // some 20 operations of callbacks and 150 steps
    std::mt19937_64 random(seed);
    std::string bytes(length, '\0');
    std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
    return bytes;
}

/// Answers how many operations were played. A difference ends the process at once, since what is
/// left of the script may wait for a lock.
std::uint64_t play(const Script& script, const Options& options) {
    const Verdict verdict = judge(script, options.libraryOnly ? Sides::LibraryAlone : Sides::Both);
    if (!verdict.difference.empty()) {
        std::cout << verdict.difference << std::flush;
        std::_Exit(1);
    }
    return verdict.played;
}

/// Plays in a copy of this process. Answers how many steps were played.
std::uint64_t playInAProcess(const Script& script, const Options& options) {
    const pid_t child = fork();
    if (child == 0) {
        play(script, options);
        std::_Exit(0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) < 0 || status != 0) {
        throw std::runtime_error("the script's process has ended with " + std::to_string(status));
    }
    return script.steps.size();
}

void playAtRandom(const Options& options) {
    const auto begin = std::chrono::steady_clock::now();
    const std::string path = "model-script-" + std::to_string(getpid());
    std::cout << "the script that is being played: model_player"
              << (options.firstSetup ? " --first-setup " : " ")
              << (options.libraryOnly ? "--library-only " : "") << path << std::endl;
    std::uint64_t played = 0;
    std::uint64_t scripts = 0;
    for (; played < options.operations; ++scripts) {
        const std::string bytes = draw(options.seed + scripts);
        std::ofstream file(path, std::ios::binary);
        if (!file.write(bytes.data(), std::ssize(bytes)).flush()) {
            throw std::runtime_error("cannot write " + path);
        }
        const Script script = scriptOf(bytes);
        played += options.firstSetup ? playInAProcess(script, options) : play(script, options);
    }
    unlink(path.c_str());
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    std::cout << played << " operations in " << scripts << " scripts, in " << spent.count()
              << " s: ";
}

void playFile(const Options& options) {
    std::ifstream file(options.file, std::ios::binary);
    const Script script = scriptOf(std::string(std::istreambuf_iterator<char>(file), {}));
    print(std::cout, script);
    std::cout.flush(); // before it ends the process
    play(script, options);
}

} // namespace

int main(int count, char** words) {
    try {
        const Options options = optionsOf(count, words);
        setUp(!options.firstSetup);
        options.file.empty() ? playAtRandom(options) : playFile(options);
        std::cout << (options.libraryOnly ? "every lock is free\n" : "both sides agree\n");
        return 0;
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        return 1;
    }
}
