// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

#include <sys/resource.h>
#include <time.h>

namespace zeltest {

using Clock = std::chrono::steady_clock;

/// What this thread has used so far.
struct Usage {
    Clock::time_point time = Clock::now();
    Clock::duration work = processorTime();
    long sleeps = timesAsleep();

    static Clock::duration processorTime() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
    /// How often it gave the processor up by itself, to wait for something.
    static long timesAsleep() {
        rusage usage{};
        ::getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
    }
};

} // namespace zeltest
