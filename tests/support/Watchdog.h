// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace zeltest {

/// Far longer than anything here takes; reached only where threads wait for each other for good.
constexpr std::chrono::seconds watchdogPatience{60};

/// Runs all of the tasks at once, each on a thread of its own, and waits for them; an exception of
/// one of them passes. Threads that are stuck can't be ended, so that the process ends instead.
inline void runAtOnce(std::vector<std::function<void()>> tasks,
                      std::chrono::milliseconds patience = watchdogPatience) {
    std::vector<std::future<void>> running;
    for (auto& task : tasks) {
        std::packaged_task<void()> packaged(std::move(task));
        running.push_back(packaged.get_future());
        std::thread(std::move(packaged)).detach();
    }
    const auto end = std::chrono::steady_clock::now() + patience;
    for (const auto& each : running) {
        if (each.wait_until(end) != std::future_status::ready) {
            std::fputs("threads are stuck\n", stderr);
            std::_Exit(3);
        }
    }
    for (auto& each : running) {
        each.get();
    }
}

/// Runs a task on another thread to its end, which it doesn't reach where this thread has left a
/// lock that it needs.
inline void runElsewhere(std::function<void()> task) {
    runAtOnce({std::move(task)});
}

} // namespace zeltest
