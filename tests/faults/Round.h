// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/faults/Report.h"

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zeltest {

/// What came of all writes.
struct Figures {
    std::uint64_t begun = 0;
    std::uint64_t acknowledged = 0;
    std::uint64_t refused = 0;
    std::uint64_t cutShort = 0;  ///< by the writer's death
    std::uint64_t leftovers = 0; ///< rounds after which a new text was left beside the file
    // Nanoseconds from the report before a call to the one after it, at most.
    std::int64_t longestRefused = 0;      ///< nothing but waiting for others
    std::int64_t longestAcknowledged = 0; ///< and the disk
};

/// Lets many processes write the defaults file at once, kills them one by one at points drawn at
/// random, and compares what the file then holds with what they said: under each writer's key, what
/// it was last told to be durable, or what it was writing as it died. Round after round, on the
/// same file.
/// Refers to: the folder. Its name has to be this process's, and its parent the configuration's.
class Rounds {
public:
    Rounds(std::string folder, std::uint32_t writers, std::uint64_t seed);

    /// What is wrong after one more round; none where nothing is.
    std::optional<std::string> play();

    [[nodiscard]] const Figures& figures() const { return figures_; }

private:
    struct Writer {
        pid_t process = -1; ///< -1: dead
        std::optional<std::string> durable;
        std::optional<Report> underWay;
    };

    void startWriters();
    void killAll();
    void kill(Writer& writer);
    Writer& victim();
    void readReports(std::size_t count);
    bool readReport();
    [[nodiscard]] std::optional<std::map<std::string, std::string>> entries() const;
    [[nodiscard]] std::optional<std::string> wrongInFile();
    [[nodiscard]] std::optional<std::string> wrongInFolder();

    std::string folder_;
    std::string file_;
    std::mt19937_64 random_;
    std::uint32_t round_ = 0;
    std::vector<Writer> writers_;
    int pipe_ = -1; ///< its end to read from
    std::uint32_t lastReporter_ = 0;
    std::optional<std::uint32_t> misreader_;
    Figures figures_;
};

} // namespace zeltest
