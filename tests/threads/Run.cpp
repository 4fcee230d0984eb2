// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Run.h"

#include "tests/threads/Parts.h"

#include <thread>

namespace zeltest {
namespace {

struct Role {
    const char* thread;
    MakePart make;
};

/// The first one is the main thread's.
const std::vector<Role>& roles() {
    static const std::vector<Role> all{
        {"main", makeDirecting},       {"reader 1", makeReading},     {"reader 2", makeReading},
        {"updater 1", makeUpdating},   {"updater 2", makeUpdating},   {"inheritor", makeInheriting},
        {"listener 1", makeListening}, {"listener 2", makeListening}, {"notifier", makeNotifying},
        {"reenterer", makeReentering}, {"host", makeHosting},
    };
    return all;
}

/// With the gate free for a moment in between: those that need no lock would otherwise keep it from
/// the others where there are few processors.
void actUntilOver(Part& part, const Stage& stage) {
    while (!stage.isOver.load(std::memory_order_relaxed)) {
        part.act();
        std::this_thread::yield();
    }
}

void actUntil(std::chrono::steady_clock::time_point end, Part& part) {
    while (std::chrono::steady_clock::now() < end) {
        part.act();
        std::this_thread::yield();
    }
}

} // namespace

OperationCounts runThreads(std::chrono::milliseconds length, std::uint64_t seed) {
    const auto end = std::chrono::steady_clock::now() + length;
    Stage stage;
    std::deque<Progress> progress;
    std::vector<std::unique_ptr<Part>> parts;
    for (const Role& role : roles()) {
        parts.push_back(role.make(stage, progress.emplace_back(role.thread), seed++));
    }
    {
        const ProgressWatch watch(progress);
        std::vector<std::thread> threads;
        for (std::size_t i = 1; i < parts.size(); ++i) {
            threads.emplace_back([&stage, &part = *parts[i]] { actUntilOver(part, stage); });
        }
        actUntil(end, *parts.front());
        stage.isOver = true;
        for (std::thread& each : threads) {
            each.join();
        }
    }
    zel::NSMainQueue::mainQueue().drain();
    stage.domain->notifyForStyleChangeOf(nullptr, {});
    stage.editor->notifyForStyleChangeOf(nullptr, {});
    for (const auto& part : parts) {
        part->check();
    }
    require(stage.livingDiaries == 0, "a handler outlives its owner");
    OperationCounts counts;
    for (const Progress& each : progress) {
        for (const auto& [what, count] : each.counts()) {
            counts[std::string(what)] += count;
        }
    }
    return counts;
}

} // namespace zeltest
