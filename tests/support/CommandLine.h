// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <string>

namespace zeltest {

/// The command line of a test program that is also run by hand.
class CommandLine : public CLI::App {
public:
    explicit CommandLine(std::string description) : App(std::move(description)) {
        option_defaults()->always_capture_default(); // shown by --help
    }

    /// Ends the process after `--help`, and with 2, saying why, where the words make no sense.
    void read(int count, const char* const* words) {
        try {
            parse(count, words);
        } catch (const CLI::ParseError& problem) {
            std::exit(exit(problem) == 0 ? 0 : 2);
        }
    }
};

} // namespace zeltest
