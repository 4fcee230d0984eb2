// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/PlainKit.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zeltest;

struct Options {
    std::uint64_t seed = 1;
    std::uint64_t operations = 1'000'000;
    std::size_t steps = 120; // of one script
    std::string script;      // a file; played instead of scripts drawn at random
    bool firstSetup = false; // whether each script finds a process that was never set up
};

std::uint64_t playing = 0; // a script's seed, for when the process ends in the middle of it

void sayWhichSeed(int signal) {
    std::cerr << "signal " << signal << " at seed " << playing << '\n';
    std::_Exit(1);
}

Options optionsOf(int count, char** words) {
    Options options;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string name = words[i];
        if (name == "--seed") {
            options.seed = std::stoull(words[i + 1]);
        } else if (name == "--operations") {
            options.operations = std::stoull(words[i + 1]);
        } else if (name == "--steps") {
            options.steps = std::stoul(words[i + 1]);
        } else if (name == "--script") {
            options.script = words[i + 1];
        } else if (name == "--first-setup") {
            options.firstSetup = std::string(words[i + 1]) == "yes";
        } else {
            throw std::invalid_argument("unknown option " + name);
        }
    }
    return options;
}

/// Whether the sides part, in a process of its own: with `firstSetup`, what happens once happens
/// in the script. One that ends by itself counts, too.
bool differsInAProcess(const Script& script) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGSEGV, SIG_DFL);
        std::signal(SIGABRT, SIG_DFL);
        std::_Exit(judge(script).parted ? 1 : 0);
    }
    int status = 0;
    return child < 0 || waitpid(child, &status, 0) != child || status != 0;
}

bool differs(const Script& script) {
    return judge(script).parted.has_value();
}

int report(const Script& script, bool apart) {
    const Script least = shrink(script, apart ? differsInAProcess : differs);
    print(std::cout, least, vocabulary());
    const Verdict verdict = judge(least);
    std::cout << "# the sides part after step " << verdict.parted.value_or(0) << '\n'
              << verdict.difference;
    return 1;
}

int playFile(const Options& options) {
    std::ifstream file(options.script);
    if (!file) {
        throw std::invalid_argument("no file " + options.script);
    }
    const Script script = parse(file, vocabulary());
    if (differsInAProcess(script)) {
        return report(script, true);
    }
    std::cout << "both sides agree\n";
    return 0;
}

/// Plays a script; answers how many operations it took, and none where the sides part.
std::optional<std::uint64_t> play(const Script& script, bool apart) {
    if (apart) {
        return differsInAProcess(script) ? std::nullopt : std::optional(script.steps.size());
    }
    const Verdict verdict = judge(script);
    return verdict.parted ? std::nullopt : std::optional(verdict.played);
}

int playAtRandom(const Options& options) {
    const auto begin = std::chrono::steady_clock::now();
    std::uint64_t played = 0;
    std::uint64_t steps = 0;
    for (playing = options.seed; played < options.operations; ++playing) {
        const Script script = drawScript(playing, options.steps, vocabulary());
        const auto count = play(script, options.firstSetup);
        if (!count) {
            std::cout << "# after " << played << " operations, seed " << playing
                      << "; again: zelstylekit_model --operations 1 --steps " << options.steps
                      << (options.firstSetup ? " --first-setup yes" : "") << " --seed " << playing
                      << "\n# the least that shows it:\n";
            return report(script, options.firstSetup);
        }
        played += *count;
        steps += script.steps.size();
    }
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    std::cout << played << " operations, " << steps << " of them steps of "
              << playing - options.seed << " scripts, in " << spent.count()
              << " s: both sides agree\n";
    return 0;
}

} // namespace

int main(int count, char** words) {
    try {
        const Options options = optionsOf(count, words);
        std::signal(SIGSEGV, sayWhichSeed);
        std::signal(SIGABRT, sayWhichSeed);
        LibraryKit::setUp(!options.firstSetup);
        PlainKit::setUp(!options.firstSetup);
        return options.script.empty() ? playAtRandom(options) : playFile(options);
    } catch (const std::exception& problem) {
        std::cerr << "seed " << playing << ": " << problem.what() << '\n'
                  << "usage: zelstylekit_model [--seed N] [--operations N] [--steps N] "
                     "[--first-setup yes] [--script FILE]\n";
        std::_Exit(2); // a thread may be stuck
    }
}
