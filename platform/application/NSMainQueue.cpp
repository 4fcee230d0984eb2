// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSMainQueue.h>

#include <deque>
#include <mutex>

namespace zel::inline v1 {

struct NSMainQueue::Queue {
    std::mutex mutex; // guards everything below
    std::deque<std::function<void()>> tasks;
    std::shared_ptr<const std::function<void()>> wakeHook;
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
    std::shared_ptr<const std::function<void()>> hook;
    {
        const std::scoped_lock guard(queue_->mutex);
        queue_->tasks.push_back(std::move(task));
        hook = queue_->wakeHook;
    }
    if (hook) {
        (*hook)();
    }
}

std::size_t NSMainQueue::drain() {
    std::size_t waiting = 0;
    {
        const std::scoped_lock guard(queue_->mutex);
        waiting = queue_->tasks.size();
    }
    std::size_t ran = 0;
    for (; ran < waiting; ++ran) {
        std::function<void()> task;
        {
            const std::scoped_lock guard(queue_->mutex);
            if (queue_->tasks.empty()) { // a task drained the queue itself
                break;
            }
            task = std::move(queue_->tasks.front());
            queue_->tasks.pop_front();
        }
        task();
    }
    return ran;
}

void NSMainQueue::setWakeHook(std::function<void()> hook) {
    auto shared = hook ? std::make_shared<const std::function<void()>>(std::move(hook)) : nullptr;
    const std::scoped_lock guard(queue_->mutex);
    queue_->wakeHook.swap(shared);
}

} // namespace zel::inline v1
