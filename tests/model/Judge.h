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

/// How a script is judged. Locks that an exception has left behind are looked for, which takes a
/// thread each time, after every so manieth step, if it raised one.
struct Judging {
    bool compares; // else the library plays alone, and styles may end at any time
    std::size_t lockInterval = 1;
    std::chrono::duration<double> patience; // until a lock that isn't free is one that was left
};

/// Plays a script on the library and on the model, step by step, and compares after each what can
/// be observed without changing it; what reading changes, where the script reads, and at its end.
Verdict judge(const Script& script, const Judging& judging);

} // namespace zeltest
