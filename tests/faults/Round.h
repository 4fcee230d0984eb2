// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/faults/History.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zeltest {

/// Lets many processes write the defaults file at once, kills them one by one at points drawn at
/// random, and compares what the file then holds with what they said. Round after round, on the
/// same file.
/// Refers to: the folder. Its name has to be this process's, and its parent the configuration's.
class Rounds {
public:
    Rounds(std::string folder, std::uint32_t writers, std::uint64_t seed);

    /// What is wrong after one more round; none where nothing is.
    std::optional<std::string> play();

    [[nodiscard]] const History& history() const { return history_; }
    /// How many rounds ended with what a writer leaves that is killed before its file is in place.
    [[nodiscard]] std::uint64_t leftovers() const { return leftovers_; }

private:
    struct Writer {
        pid_t process = -1;
        std::int64_t died = 0; ///< when it was seen to be dead; 0: it lives
    };

    void startWriters();
    void killAll();
    void kill(std::size_t writer);
    std::size_t victim();
    void readReports(std::size_t count);
    bool readReport();
    [[nodiscard]] std::optional<std::string> wrongInFile();
    [[nodiscard]] std::optional<std::string> wrongInFolder();

    std::string folder_;
    std::string file_;
    std::uint64_t seed_;
    std::mt19937_64 random_;
    std::uint32_t round_ = 0;
    std::vector<Writer> writers_;
    int pipe_ = -1; ///< its end to read from
    std::uint32_t lastReporter_ = 0;
    History history_;
    std::uint64_t leftovers_ = 0;
};

} // namespace zeltest
