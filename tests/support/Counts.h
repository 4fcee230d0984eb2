// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

#include <unistd.h>

#if defined(__GLIBC__)
/// Of the library that counts what is reached; linked in by the preset "coverage" alone.
extern "C" [[gnu::weak]] void __gcov_dump();
#endif

namespace zeltest {

/// Writes what this process has reached, as its ordinary end does; nothing where nobody counts.
/// Whatever ends without its destructors calls it, or its counts are lost.
inline void writeCounts() {
#if defined(__GLIBC__)
    if (__gcov_dump != nullptr) {
        __gcov_dump();
    }
#endif
}

/// Ends the process at once and with nothing run that is to run at an ordinary end.
[[noreturn]] inline void endAtOnce(int result) {
    writeCounts();
    ::_exit(result);
}

/// Has the counts written where this process aborts.
inline void writeCountsAtAbort() {
    std::signal(SIGABRT, [](int) { writeCounts(); });
}

} // namespace zeltest
