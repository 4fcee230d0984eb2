// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/LibraryKit.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace zeltest {

/// What the model's command line says.
struct Options {
    std::uint64_t seed = 1;
    std::uint64_t operations = 1'000'000;
    std::size_t steps = 120;  // of one script
    std::string script;       // a file; played instead of scripts drawn at random
    bool firstSetup = false;  // whether each script finds a process that was never set up
    bool libraryOnly = false; // whether nothing is compared
    double patience = 20;     // seconds for a lock to become free; far longer than it takes
    Mistake mistake = Mistake::None;

    /// The command line that plays so many operations from that seed on in the same way.
    [[nodiscard]] std::string again(std::uint64_t fromSeed, std::uint64_t count) const;
    /// The one that plays a file.
    [[nodiscard]] std::string againByScript() const;

private:
    /// What is the same in both.
    [[nodiscard]] std::string ways() const;
};

/// Ends the process after `--help`, and with 2, saying why, where the words make no sense.
Options optionsOf(int count, const char* const* words);

} // namespace zeltest
