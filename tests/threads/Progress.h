// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace zeltest {

/// Ends the process where something is not as it must be.
void require(bool holds, std::string_view otherwise);

/// What one thread does now, and how often it did what; written by it, read by the watch.
class Progress {
public:
    explicit Progress(std::string_view thread) : thread_(thread) {}

    /// `what` is a literal.
    void begin(const char* what) noexcept {
        doing_.store(what, std::memory_order_relaxed);
        done_.fetch_add(1, std::memory_order_relaxed);
        ++counts_[what];
    }
    /// What the thread brought about on others, before its counts are read.
    void add(const char* what, std::uint64_t times) { counts_[what] += times; }
    [[nodiscard]] const std::string& thread() const noexcept { return thread_; }
    [[nodiscard]] const char* doing() const noexcept { return doing_.load(); }
    [[nodiscard]] std::uint64_t done() const noexcept { return done_.load(); }
    /// By what was done; after the thread's end.
    [[nodiscard]] const std::map<std::string_view, std::uint64_t>& counts() const noexcept {
        return counts_;
    }

private:
    const std::string thread_;
    std::atomic<const char*> doing_{"starting"};
    std::atomic<std::uint64_t> done_{0};
    std::map<std::string_view, std::uint64_t> counts_;
};

/// How long threads may stay at one operation. Counted by the watch's own turns: where the machine
/// is so busy that the process gets no turn, neither does the watch.
struct Patience {
    std::chrono::milliseconds turn{1000};
    int withAll = 10;  ///< turns in which none goes on
    int withOne = 120; ///< turns in which one doesn't go on
};

/// Ends the process, and says what every thread was doing, where none went on to its next operation
/// for longer than its patience with all, or one of them for longer than that with one.
class ProgressWatch {
public:
    explicit ProgressWatch(const std::deque<Progress>& threads, Patience patience = {});
    ~ProgressWatch();
    ProgressWatch(const ProgressWatch&) = delete;
    ProgressWatch& operator=(const ProgressWatch&) = delete;

private:
    void watch();

    const std::deque<Progress>& threads_;
    const Patience patience_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool isEnded_ = false; // guarded by mutex_
    std::thread thread_;
};

} // namespace zeltest
