// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/StylingLock.h"
#include "tests/support/Watchdog.h"

namespace zeltest {

/// Whether no thread holds the styling lock, this one included. Where another one does, and goes on
/// holding it, the watchdog ends the process.
inline bool stylingLockIsFree() {
    if (zel::StylingLock::isHeld()) {
        return false;
    }
    runElsewhere([] { const zel::StylingLock lock; });
    return true;
}

} // namespace zeltest
