// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Script.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace zeltest {

const Vocabulary& vocabulary();

/// How a script went on both sides.
struct Verdict {
    std::uint64_t played = 0;          // operations, those of callbacks included
    std::optional<std::size_t> parted; // the step after which the sides differ
    std::string difference;            // the two sides' entries from there on
    bool hasLeftALock = false; // the difference; a thread is then stuck, and the process of no use
};

/// How locks are looked for that an exception has left behind, which takes a thread each time:
/// after every so manieth step, if it raised one.
struct LockChecks {
    std::size_t interval = 16;
    std::chrono::seconds patience{20}; // far longer than it takes
};

/// Plays a script on the library and on the model, step by step, and compares all that can be
/// observed after each.
Verdict judge(const Script& script, const LockChecks& locks = {});

} // namespace zeltest
