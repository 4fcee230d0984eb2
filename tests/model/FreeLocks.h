// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/LibraryKit.h"
#include "tests/model/Player.h"

#include <chrono>

namespace zeltest {

/// Has another thread take every lock of a table or an object that the script's slots lead to,
/// those of its managers and of its styles' observers included, and those that the process has one
/// of; it changes nothing that can be observed. False where one isn't free: that thread is then
/// stuck for good. The locks of what the script has let go, and mutexes under which nothing can
/// raise, aren't looked at.
bool locksAreFree(const Player<LibraryKit>& player, std::chrono::duration<double> patience);

} // namespace zeltest
