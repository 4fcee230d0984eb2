// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

namespace zeltest {

/// How a process ended: its exit status, or a signal's number below 0.
using End = int;

enum class Output { Shown, Hidden };

/// Runs an action in a process of its own, a copy of this one, which has no other thread, and which
/// ends at once with what the action answers. One whose output is hidden is given a minute.
End runInAProcess(const std::function<int()>& action, Output output);

/// Whether a process was ended from outside, by a limit or by somebody who wants no more of it.
bool isStopped(End end);

/// "status 1", or "signal 11, Segmentation fault".
std::string describe(End end);

} // namespace zeltest
