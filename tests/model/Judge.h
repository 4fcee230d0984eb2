// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Script.h"

#include <cstdint>
#include <string>

namespace zeltest {

/// Has happen on both sides what happens once in a process. The default domain's styles are left to
/// the scripts where the first of them is to see that.
void setUp(bool withStyles);

/// Who plays. Alone, the library isn't compared with anything, and styles may end at any time.
enum class Sides { Both, LibraryAlone };

/// How a script went.
struct Verdict {
    std::uint64_t played = 0; // operations, those of callbacks included
    std::string difference;   // empty where there is none; else the process is of no more use
};

/// Plays a script on the library and on the model, step by step, and compares after each what can
/// be observed without changing it; what reading changes, where the script reads, and at its end.
/// After each step the library has to have released every lock.
Verdict judge(const Script& script, Sides sides);

} // namespace zeltest
