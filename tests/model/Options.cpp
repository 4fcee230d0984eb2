// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Options.h"

#include "tests/support/CommandLine.h"

#include <map>

namespace zeltest {

namespace {

const std::map<std::string, Mistake> mistakes = {{"none", Mistake::None},
                                                 {"drain", Mistake::ForgottenDrain},
                                                 {"lock", Mistake::LockKept},
                                                 {"crash", Mistake::Crash}};

} // namespace

std::string Options::ways() const {
    std::string words = firstSetup ? " --first-setup" : "";
    words += libraryOnly ? " --library-only" : "";
    for (const auto& [name, each] : mistakes) {
        words += each == mistake && each != Mistake::None ? " --mistake " + name : "";
    }
    return words;
}

std::string Options::again(std::uint64_t fromSeed, std::uint64_t count) const {
    return "model_player --seed " + std::to_string(fromSeed) + " --operations " +
           std::to_string(count) + " --steps " + std::to_string(steps) + ways();
}

std::string Options::againByScript() const {
    return "model_player" + ways() + " --script FILE";
}

Options optionsOf(int count, const char* const* words) {
    Options options;
    CommandLine program(
        "Plays scripts drawn at random on the library and on a plain model of it, and "
        "compares the two after each step. Ends with 0 where both sides agree. Where "
        "they differ, a lock is left or the process ends, it prints the least script "
        "that shows it and ends with 1.");
    program.add_option("--seed", options.seed, "The first script's");
    program.add_option("--operations", options.operations, "How many are played at least");
    program.add_option("--steps", options.steps, "Of one script");
    program.add_option("--script", options.script, "A file, played instead of scripts at random")
        ->check(CLI::ExistingFile);
    program.add_flag("--first-setup", options.firstSetup,
                     "Each script has a process of its own, in which nothing was set up");
    program.add_flag("--library-only", options.libraryOnly,
                     "Compares nothing, and looks for left locks and ended processes alone");
    program
        .add_option("--patience", options.patience,
                    "Seconds after which a lock is taken to be left")
        ->check(CLI::PositiveNumber);
    program
        .add_option("--mistake", options.mistake,
                    "One that the library's side makes, to show that it is found")
        ->transform(CLI::CheckedTransformer(mistakes));
    program.read(count, words);
    return options;
}

} // namespace zeltest
