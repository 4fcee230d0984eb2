// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Progress.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace zeltest {
namespace {

/// How far a thread was when it was seen to go on last, and how many turns ago.
struct Seen {
    std::uint64_t done = 0;
    int turns = 0;
};

[[noreturn]] void giveUp(const std::deque<Progress>& threads) {
    std::fputs("threads are stuck:\n", stderr);
    for (const Progress& each : threads) {
        std::fprintf(stderr, "  %s: %s, its operation %llu\n", each.thread().c_str(), each.doing(),
                     static_cast<unsigned long long>(each.done()));
    }
    std::abort();
}

} // namespace

void require(bool holds, std::string_view otherwise) {
    if (!holds) {
        std::fprintf(stderr, "FAILED: %.*s\n", static_cast<int>(otherwise.size()),
                     otherwise.data());
        std::abort();
    }
}

ProgressWatch::ProgressWatch(const std::deque<Progress>& threads, Patience patience)
    : threads_(threads), patience_(patience), thread_([this] { watch(); }) {}

ProgressWatch::~ProgressWatch() {
    {
        const std::scoped_lock guard(mutex_);
        isEnded_ = true;
    }
    ended_.notify_all();
    thread_.join();
}

void ProgressWatch::watch() {
    std::vector<Seen> seen(threads_.size());
    int turnsOfAll = 0;
    std::unique_lock guard(mutex_);
    while (!ended_.wait_for(guard, patience_.turn, [this] { return isEnded_; })) {
        ++turnsOfAll;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            ++seen[i].turns;
            if (const std::uint64_t done = threads_[i].done(); done != seen[i].done) {
                seen[i] = {done, 0};
                turnsOfAll = 0;
            }
            if (seen[i].turns > patience_.withOne) {
                giveUp(threads_);
            }
        }
        if (turnsOfAll > patience_.withAll) {
            giveUp(threads_);
        }
    }
}

} // namespace zeltest
