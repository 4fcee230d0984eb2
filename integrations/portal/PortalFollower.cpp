// SPDX-License-Identifier: Apache-2.0
#include "PortalFollower.h"

#include "SessionBusAddress.h"

#include <ZelStyleKit/NSApplication.h>

#include <algorithm>
#include <utility>

namespace zel::inline v1 {
namespace {

// Messages that one call handles. A message takes some microseconds, so that a call stays well
// below the time of a frame.
constexpr int messagesInOneCall = 64;

constexpr std::chrono::milliseconds longestDelay = std::chrono::minutes{5};

constexpr std::uint32_t preferDark = 1;

} // namespace

void PortalFollower::start(ZelPortalOptions options) {
    stop();
    options_ = std::move(options);
    options_.answerTimeout = std::min(options_.answerTimeout, longestDelay);
    retryDelay_ = std::min(options_.retryAfter, longestDelay);
    // Made here, since what tracks its appearance looks for it only once.
    NSApplication::sharedApplication();
    const std::string wanted =
        options_.busAddress.empty() ? sessionBusAddress() : options_.busAddress;
    address_ = addressesThatNeverBlock(wanted);
    if (!address_.empty()) {
        conclude(ZelPortalStatus::Connecting, "Connecting to the session bus.");
        connect();
    } else {
        // The environment stays as it is, so that trying again is of no use.
        conclude(ZelPortalStatus::NoBus,
                 wanted.empty() ? "There is no session bus: neither DBUS_SESSION_BUS_ADDRESS nor "
                                  "XDG_RUNTIME_DIR is set."
                                : "The session bus is not on a socket of this machine: " + wanted);
    }
    tell();
}

void PortalFollower::stop() noexcept {
    bus_.reset();
    deadline_.reset();
    retryAt_.reset();
    status_ = ZelPortalStatus::Stopped;
    reason_.clear();
    scheme_.reset();
    appearanceUntold_ = false;
    statusUntold_ = false;
}

void PortalFollower::process() {
    bool waiting = !bus_;
    for (int count = 0; bus_ && count < messagesInOneCall; ++count) {
        const auto event = bus_->process();
        if (event == PortalBus::Event::None) {
            waiting = true;
            break;
        }
        handle(event);
    }
    // Time is up only when nothing has come: a host that was busy may find its answer here.
    if (waiting) {
        handleTimers();
    }
    tell();
}

void PortalFollower::refresh() noexcept {
    if (deadline_) {
        askAgain_ = true;
    } else if (!address_.empty() && status_ != ZelPortalStatus::Stopped) {
        retryAt_ = Clock::now();
    }
}

void PortalFollower::connect() {
    bus_ = std::make_unique<PortalBus>();
    if (bus_->open(address_)) {
        ask();
    } else {
        closed(std::string(bus_->failure()));
    }
}

void PortalFollower::ask() {
    askAgain_ = false;
    retryAt_.reset();
    if (bus_->ask()) {
        deadline_ = Clock::now() + options_.answerTimeout;
    } else {
        closed(std::string(bus_->failure()));
    }
}

// However much changes while an answer is still in time, one more question is enough. One that is
// late may never come.
void PortalFollower::askAgain() {
    if (deadline_) {
        askAgain_ = true;
    } else {
        ask();
    }
}

void PortalFollower::handle(PortalBus::Event event) {
    switch (event) {
    case PortalBus::Event::SettingChanged:
        askAgain();
        break;
    case PortalBus::Event::PortalCame:
        ask(); // a question under way may be its predecessor's
        break;
    case PortalBus::Event::PortalLeft:
        // A question under way is answered by the bus, or its successor is asked.
        if (status_ != ZelPortalStatus::Connecting) {
            portalIsAbsent("The desktop portal has left the bus.");
        }
        break;
    case PortalBus::Event::Answered:
        deadline_.reset();
        answered(bus_->answer());
        if (askAgain_) {
            ask();
        }
        break;
    case PortalBus::Event::Closed:
        closed(std::string(bus_->failure()));
        break;
    case PortalBus::Event::None:
    case PortalBus::Event::Other:
        break;
    }
}

void PortalFollower::answered(const PortalAnswer& answer) {
    switch (answer.kind) {
    case PortalAnswer::Kind::Value:
        retryAt_.reset();
        retryDelay_ = std::min(options_.retryAfter, longestDelay);
        appearanceUntold_ |= scheme_ != answer.scheme;
        scheme_ = answer.scheme;
        conclude(ZelPortalStatus::Following, answer.text);
        break;
    case PortalAnswer::Kind::Unreachable:
        portalIsAbsent(answer.text);
        break;
    case PortalAnswer::Kind::Error:
        conclude(ZelPortalStatus::NoAnswer, answer.text);
        retryLater();
        break;
    }
}

// What was known stays while nobody is there to say otherwise.
void PortalFollower::portalIsAbsent(const std::string& reason) {
    conclude(hasAnswer() ? ZelPortalStatus::Lost : ZelPortalStatus::NoPortal, reason);
    retryLater();
}

void PortalFollower::busIsAbsent(const std::string& reason) {
    conclude(hasAnswer() ? ZelPortalStatus::Lost : ZelPortalStatus::NoBus, reason);
    retryLater();
}

void PortalFollower::closed(const std::string& reason) {
    bus_.reset();
    deadline_.reset();
    busIsAbsent(reason);
}

// The question stays under way until it is asked anew, since a late answer is better than none.
void PortalFollower::overdue() {
    const std::string limit = std::to_string(options_.answerTimeout.count()) + " ms.";
    deadline_.reset();
    if (!bus_->ready()) {
        busIsAbsent("The session bus has not answered within " + limit);
        return; // a question that has not gone out yet needs no asking again
    }
    if (bus_->portalIsGone()) {
        portalIsAbsent("The desktop portal has not started within " + limit);
    } else {
        conclude(ZelPortalStatus::NoAnswer, "The desktop portal has not answered within " + limit);
        retryLater();
    }
    if (askAgain_) {
        ask();
    }
}

void PortalFollower::handleTimers() {
    const auto now = Clock::now();
    if (deadline_ && now >= *deadline_) {
        overdue();
    }
    if (retryAt_ && now >= *retryAt_) {
        retryAt_.reset();
        if (bus_ && bus_->ready()) {
            ask();
        } else {
            connect();
        }
    }
}

void PortalFollower::retryLater() {
    if (!retryAt_ && retryDelay_.count() > 0) {
        retryAt_ = Clock::now() + retryDelay_;
        retryDelay_ = std::min(2 * retryDelay_, longestDelay);
    }
}

bool PortalFollower::hasAnswer() const noexcept {
    return status_ == ZelPortalStatus::Following || status_ == ZelPortalStatus::Lost;
}

void PortalFollower::conclude(ZelPortalStatus status, const std::string& reason) {
    if (status == status_ && reason == reason_) {
        return;
    }
    reason_ = reason;
    statusUntold_ = true;
    if (status == status_) {
        return;
    }
    status_ = status;
    appearanceUntold_ |= status != ZelPortalStatus::Connecting;
    if (!hasAnswer()) {
        scheme_.reset();
    }
}

// Last of all: observers and the callback may stop, restart or destroy what has called them.
void PortalFollower::tell() {
    if (std::exchange(appearanceUntold_, false)) {
        NSApplication::sharedApplication()->setEffectiveAppearance(NSAppearance::appearanceNamed(
            scheme_ == preferDark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua));
    }
    if (std::exchange(statusUntold_, false) && options_.statusChanged) {
        const auto statusChanged = options_.statusChanged;
        const std::string reason = reason_;
        statusChanged(status_, reason);
    }
}

int PortalFollower::fileDescriptor() const noexcept {
    return bus_ ? bus_->fileDescriptor() : -1;
}

short PortalFollower::events() const noexcept {
    return bus_ ? bus_->events() : short{0};
}

std::optional<std::chrono::microseconds> PortalFollower::nextTimeout() const noexcept {
    if (appearanceUntold_ || statusUntold_) {
        return std::chrono::microseconds{0};
    }
    constexpr auto never = Clock::time_point::max();
    const auto wakeUp = bus_ ? bus_->wakeUp() : std::nullopt;
    const auto first =
        std::min({wakeUp.value_or(never), deadline_.value_or(never), retryAt_.value_or(never)});
    if (first == never) {
        return std::nullopt;
    }
    const auto left = std::chrono::ceil<std::chrono::microseconds>(first - Clock::now());
    return std::max(left, std::chrono::microseconds{0});
}

} // namespace zel::inline v1
