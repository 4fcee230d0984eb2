// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Options.h"

#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace zeltest {

namespace {

template <class Number>
void read(Number& number, const std::string& name, std::string_view text) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc() || end != text.data() + text.size()) {
        throw std::invalid_argument(name + " wants a number, not \"" + std::string(text) + '"');
    }
}

void set(Options& options, const std::string& name, std::string_view value) {
    if (name == "--seed") {
        read(options.seed, name, value);
    } else if (name == "--operations") {
        read(options.operations, name, value);
    } else if (name == "--steps") {
        read(options.steps, name, value);
    } else if (name == "--script") {
        options.script = value;
    } else if (value == "yes" || value == "no") {
        options.firstSetup = value == "yes";
    } else {
        throw std::invalid_argument(name + " wants yes or no");
    }
}

bool isKnown(std::string_view name) {
    return name == "--seed" || name == "--operations" || name == "--steps" || name == "--script" ||
           name == "--first-setup";
}

} // namespace

const char* const usage =
    "usage: zelstylekit_model [--seed N] [--operations N] [--steps N] [--first-setup yes|no]\n"
    "                         [--script FILE] [--help]\n"
    "Plays scripts drawn at random, from a seed on (1) until so many operations were played\n"
    "(1000000), on the library and on a plain model of it, and compares the two after each of a\n"
    "script's steps (120); or plays a script from a file. With --first-setup each script has a\n"
    "process of its own, in which nothing was set up. Where the two differ, or the process ends,\n"
    "it prints the least script that shows it.\n";

std::string Options::again(std::uint64_t fromSeed, std::uint64_t count) const {
    return "zelstylekit_model --seed " + std::to_string(fromSeed) + " --operations " +
           std::to_string(count) + " --steps " + std::to_string(steps) +
           (firstSetup ? " --first-setup yes" : "");
}

std::string Options::againByScript() const {
    return std::string("zelstylekit_model") + (firstSetup ? " --first-setup yes" : "") +
           " --script FILE";
}

Options optionsOf(int count, const char* const* words) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const std::string name = words[i];
        if (name == "--help") {
            options.help = true;
            return options;
        }
        if (!isKnown(name)) {
            throw std::invalid_argument("unknown option " + name);
        }
        if (i + 1 == count) {
            throw std::invalid_argument(name + " wants a value");
        }
        set(options, name, words[i + 1]);
    }
    return options;
}

} // namespace zeltest
