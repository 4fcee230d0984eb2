// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Options.h"

#include "tests/support/CommandLine.h"

namespace zeltest {

std::string Options::again(std::uint64_t fromSeed, std::uint64_t count) const {
    return "zelstylekit_model --seed " + std::to_string(fromSeed) + " --operations " +
           std::to_string(count) + " --steps " + std::to_string(steps) +
           (firstSetup ? " --first-setup" : "");
}

std::string Options::againByScript() const {
    return std::string("zelstylekit_model") + (firstSetup ? " --first-setup" : "") +
           " --script FILE";
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
    program.read(count, words);
    return options;
}

} // namespace zeltest
