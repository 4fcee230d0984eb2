// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace zel::inline v1 {

/// The main queue: tasks that run later, on the thread that drains it. The library starts no
/// thread: a host drains the queue from its own event loop, when the wake hook says so.
/// Owns: the waiting tasks.
/// Threads: any thread may add a task; only the main thread drains; in handlers and destructors as
/// well.
/// Failure: a task's exception passes to who drains; the tasks behind it stay queued.
class ZEL_EXPORT NSMainQueue {
public:
    NSMainQueue();
    ~NSMainQueue();
    NSMainQueue(const NSMainQueue&) = delete;
    NSMainQueue& operator=(const NSMainQueue&) = delete;

    /// The process's queue.
    static NSMainQueue& mainQueue();

    /// `dispatch_async`: adds the task at the end and calls the wake hook, never the task.
    void async(std::function<void()> task);

    /// Runs the tasks that are waiting now, in order; those added meanwhile wait for the next
    /// drain. Answers how many ran.
    std::size_t drain();

    /// Called after each `async`, on the thread that added the task, with no private lock held; it
    /// asks the host's loop to drain soon and must not drain itself. None: the host drains by
    /// itself.
    void setWakeHook(std::function<void()> hook);

private:
    struct Queue;
    std::unique_ptr<Queue> queue_;
};

} // namespace zel::inline v1
