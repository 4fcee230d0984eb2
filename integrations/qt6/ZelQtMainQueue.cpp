// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtMainQueue.h>

#include <ZelStyleKit/NSMainQueue.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <mutex>

namespace zel {
inline namespace v1 {

/// Asks the event loop to drain soon, once for however many tasks.
struct ZelQtMainQueue::Waker {
    std::mutex mutex;           // held for single accesses, and while an event is posted
    QObject* drainer = nullptr; // guarded by mutex; none once the queue is let go
    bool posted = false;        // guarded by mutex

    void wake() {
        const std::scoped_lock guard(mutex);
        if (drainer && !posted) {
            posted = true;
            // The event loop owns the event.
            QCoreApplication::postEvent(drainer, std::make_unique<QEvent>(QEvent::User).release());
        }
    }
    void taken() {
        const std::scoped_lock guard(mutex);
        posted = false;
    }
    void setDrainer(QObject* object) {
        const std::scoped_lock guard(mutex);
        drainer = object;
    }
};

/// Receives the event, on the main thread.
class ZelQtMainQueue::Drainer final : public QObject {
public:
    std::shared_ptr<Waker> waker;

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        waker->taken(); // before the tasks, so that what they add wakes again
        NSMainQueue::mainQueue().drain();
        return true;
    }
};

ZelQtMainQueue::ZelQtMainQueue()
    : drainer_(std::make_unique<Drainer>()), waker_(std::make_shared<Waker>()) {
    drainer_->waker = waker_;
    waker_->setDrainer(drainer_.get());
    NSMainQueue::mainQueue().setWakeHook([waker = waker_] { waker->wake(); });
    waker_->wake(); // for tasks that were added before
}

ZelQtMainQueue::~ZelQtMainQueue() {
    NSMainQueue::mainQueue().setWakeHook(nullptr);
    waker_->setDrainer(nullptr);
}

} // namespace v1
} // namespace zel
