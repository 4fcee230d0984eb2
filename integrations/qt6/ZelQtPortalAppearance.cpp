// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtPortalAppearance.h>

#include "QtSessionBus.h"

#include <QGuiApplication>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <utility>
#include <vector>

#include <poll.h>

namespace zel::inline v1 {

/// Waits on Qt's event loop for what the portal's connection waits for.
class ZelQtPortalAppearance::Loop final : public QObject {
public:
    ZelPortalAppearance portal;

    Loop() {
        timer_.setSingleShot(true);
        connect(&timer_, &QTimer::timeout, this, &Loop::turn);
    }
    ~Loop() override { std::erase(waitingForApplication(), this); }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    /// Begins to wait; where there is no event loop yet, as soon as there is one.
    void begin() {
        if (!QCoreApplication::instance()) {
            waitingForApplication().push_back(this);
            qAddPreRoutine([] {
                for (Loop* const each : std::exchange(waitingForApplication(), {})) {
                    each->begin();
                }
            });
            return;
        }
        // One without windows is never active.
        if (auto* const application =
                qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
            connect(application, &QGuiApplication::applicationStateChanged, this,
                    [this](Qt::ApplicationState state) {
                        if (state == Qt::ApplicationActive) {
                            portal.refresh();
                            wait();
                        }
                    });
        }
        wait();
    }

private:
    static std::vector<Loop*>& waitingForApplication() {
        static std::vector<Loop*> loops;
        return loops;
    }

    /// What to wait for may be different after every operation.
    void wait() {
        const int descriptor = portal.fileDescriptor();
        if (descriptor != descriptor_) {
            descriptor_ = descriptor;
            readable_ = notifier(QSocketNotifier::Read);
            writable_ = notifier(QSocketNotifier::Write);
        }
        if (readable_) {
            readable_->setEnabled((portal.events() & POLLIN) != 0);
            writable_->setEnabled((portal.events() & POLLOUT) != 0);
        }
        if (const auto timeout = portal.nextTimeout()) {
            timer_.start(std::chrono::ceil<std::chrono::milliseconds>(*timeout));
        } else {
            timer_.stop();
        }
    }
    void turn() {
        const QPointer<Loop> alive(this);
        portal.process();
        if (alive) { // what it called may have ended it
            wait();
        }
    }
    std::unique_ptr<QSocketNotifier> notifier(QSocketNotifier::Type type) {
        if (descriptor_ < 0) {
            return nullptr;
        }
        auto made = std::make_unique<QSocketNotifier>(descriptor_, type);
        connect(made.get(), &QSocketNotifier::activated, this, &Loop::turn);
        return made;
    }

    int descriptor_ = -1;
    std::unique_ptr<QSocketNotifier> readable_;
    std::unique_ptr<QSocketNotifier> writable_;
    QTimer timer_;
};

ZelQtPortalAppearance::ZelQtPortalAppearance(ZelPortalOptions options,
                                             std::chrono::milliseconds firstWait)
    : loop_(std::make_unique<Loop>()) {
    const bool isUsersBus = options.busAddress.empty();
    loop_->portal.start(std::move(options));
    const ZelPortalStatus status = loop_->portal.waitForFirstAnswer(firstWait);
    if (isUsersBus && firstWait.count() > 0 && status == ZelPortalStatus::Connecting &&
        !loop_->portal.busHasAnswered()) {
        leaveQtWithoutSessionBus();
    }
    loop_->begin();
}

ZelQtPortalAppearance::~ZelQtPortalAppearance() = default;

const ZelPortalAppearance& ZelQtPortalAppearance::portal() const noexcept {
    return loop_->portal;
}

} // namespace zel::inline v1
