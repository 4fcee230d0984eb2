// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtMainQueue.h>

#include <ZelStyleKit/NSBundle.h>
#include <ZelStyleKit/NSMainQueue.h>

#include <QCollator>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <mutex>

namespace zel::inline v1 {
namespace {

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// By Qt's default locale, which is the user's unless the application has another.
int compareNames(std::string_view a, std::string_view b) {
    QCollator collator; // one for each call: none may be used by two threads
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator.compare(toQString(a), toQString(b));
}

} // namespace

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
    setLocalizedComparison(compareNames);
    waker_->wake(); // for tasks that were added before
}

ZelQtMainQueue::~ZelQtMainQueue() {
    setLocalizedComparison(nullptr);
    NSMainQueue::mainQueue().setWakeHook(nullptr);
    waker_->setDrainer(nullptr);
}

} // namespace zel::inline v1
