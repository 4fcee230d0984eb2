// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSMainQueue.h>

#include "platform/locks/PrivateLock.h"
#include "platform/objects/HostFunction.h"

#include <deque>

namespace zel::inline v1 {

struct NSMainQueue::Queue {
    PrivateLock lock;
    std::deque<std::function<void()>> tasks ZEL_GUARDED_BY(lock);
    HostFunction<std::function<void()>> wakeHook;
};

NSMainQueue::NSMainQueue() : queue_(std::make_unique<Queue>()) {}

NSMainQueue::~NSMainQueue() = default;

NSMainQueue& NSMainQueue::mainQueue() {
    static auto* const queue = new NSMainQueue; // never destroyed: used at exit
    return *queue;
}

void NSMainQueue::async(std::function<void()> task) {
    if (!task) {
        return;
    }
    {
        const PrivateGuard guard(queue_->lock);
        queue_->tasks.push_back(std::move(task));
    }
    if (const auto hook = queue_->wakeHook.get()) {
        requireNoPrivateLock();
        (*hook)();
    }
}

std::size_t NSMainQueue::drain() {
    std::size_t waiting = 0;
    {
        const PrivateGuard guard(queue_->lock);
        waiting = queue_->tasks.size();
    }
    std::size_t ran = 0;
    for (; ran < waiting; ++ran) {
        std::function<void()> task;
        {
            const PrivateGuard guard(queue_->lock);
            if (queue_->tasks.empty()) { // a task drained the queue itself
                break;
            }
            task = std::move(queue_->tasks.front());
            queue_->tasks.pop_front();
        }
        requireNoPrivateLock();
        task();
    }
    return ran;
}

void NSMainQueue::setWakeHook(std::function<void()> hook) {
    queue_->wakeHook.set(std::move(hook));
}

} // namespace zel::inline v1
