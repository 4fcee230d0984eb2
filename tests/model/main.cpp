// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Judge.h"
#include "tests/model/LibraryKit.h"
#include "tests/model/PlainKit.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

using namespace zeltest;

struct Options {
    std::uint64_t seed = 1;
    std::uint64_t operations = 1'000'000;
    std::size_t steps = 120; // of one script
    std::string script;      // a file; played instead of scripts drawn at random
};

std::uint64_t playing = 0; // the seed, for when the process ends in the middle of it

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
        } else {
            throw std::invalid_argument("unknown option " + name);
        }
    }
    return options;
}

int report(const Script& script) {
    const Script least = shrink(script);
    const Verdict verdict = judge(least);
    print(std::cout, least, vocabulary());
    std::cout << "# the sides part after step " << verdict.parted.value_or(0) << '\n'
              << verdict.difference;
    return 1;
}

int playFile(const std::string& name) {
    std::ifstream file(name);
    if (!file) {
        throw std::invalid_argument("no file " + name);
    }
    const Script script = parse(file, vocabulary());
    if (judge(script).parted) {
        return report(script);
    }
    std::cout << "both sides agree\n";
    return 0;
}

int playAtRandom(const Options& options) {
    const auto begin = std::chrono::steady_clock::now();
    std::uint64_t played = 0;
    std::uint64_t steps = 0;
    for (playing = options.seed; played < options.operations; ++playing) {
        const Script script = drawScript(playing, options.steps, vocabulary());
        const Verdict verdict = judge(script);
        played += verdict.played;
        steps += script.steps.size();
        if (verdict.parted) {
            std::cout << "# after " << played << " operations, seed " << playing
                      << "; again: zelstylekit_model --operations 1 --steps " << options.steps
                      << " --seed " << playing << "\n# the least that shows it:\n";
            return report(script);
        }
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
        LibraryKit::setUp();
        PlainKit::setUp();
        return options.script.empty() ? playAtRandom(options) : playFile(options.script);
    } catch (const std::exception& problem) {
        std::cerr << "seed " << playing << ": " << problem.what() << '\n'
                  << "usage: zelstylekit_model [--seed N] [--operations N] [--steps N] "
                     "[--script FILE]\n";
        return 2;
    }
}
