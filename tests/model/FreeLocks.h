// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/LibraryKit.h"
#include "tests/model/Player.h"

namespace zeltest {

/// Has another thread take every lock that a script can have left, and change nothing that can be
/// observed. Raises where a lock isn't free; that thread is then stuck for good.
void requireFreeLocks(const Player<LibraryKit>& player);

} // namespace zeltest
