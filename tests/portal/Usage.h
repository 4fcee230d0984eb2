// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <fstream>

#include <sys/resource.h>
#include <time.h>

namespace zeltest {

using Clock = std::chrono::steady_clock;

/// What an operation took of its thread's time.
struct Usage {
    bool slept = false;       // it gave the processor up by itself, to wait for something
    Clock::duration work{0};  // on a processor
    Clock::duration sleep{0}; // waiting for something else than a processor

    template <class Operation>
    static Usage of(Operation operation) {
        // Innermost the clock: who is displaced between two readings hasn't slept.
        const Counters before;
        const auto begin = Clock::now();
        operation();
        const auto end = Clock::now();
        const Counters after;
        Usage used;
        used.work = after.work - before.work;
        // Pages that had to come from the disk take as long as the disk does.
        used.slept = after.sleeps > before.sleeps && after.diskReads == before.diskReads;
        if (used.slept) {
            const auto queued = after.queued - before.queued;
            used.sleep = std::max(Clock::duration(0), end - begin - used.work - queued);
        }
        return used;
    }
    /// Whether the kernel tells how long a thread waits for a processor. Where it doesn't, that
    /// counts as sleep.
    static bool knowsSleep() {
        static const bool known = Schedule().turns > 0;
        return known;
    }

private:
    /// What the kernel counts of this thread; all 0 where it doesn't.
    struct Schedule {
        std::chrono::nanoseconds::rep run = 0;
        std::chrono::nanoseconds::rep queued = 0; // for a processor
        long turns = 0;

        Schedule() { std::ifstream("/proc/thread-self/schedstat") >> run >> queued >> turns; }
    };

    /// What this thread has used so far.
    struct Counters {
        Clock::duration work = processorTime();
        std::chrono::nanoseconds queued{Schedule().queued};
        long sleeps = 0;
        long diskReads = 0;

        Counters() {
            rusage usage{};
            ::getrusage(RUSAGE_THREAD, &usage);
            sleeps = usage.ru_nvcsw;
            diskReads = usage.ru_majflt;
        }
    };

    static Clock::duration processorTime() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
};

} // namespace zeltest
