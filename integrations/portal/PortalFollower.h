// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PortalBus.h"

#include <ZelStyleKit/ZelPortalAppearance.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

/// Decides what the application's appearance is, and when to ask the portal again.
/// Owns: the connection, while there is one. Refers to: the application object, by its accessor.
/// Threads: the main thread. Callbacks and observers run at the end of `start` and `process`, when
/// no operation of the bus is under way, so that they may stop and restart it.
/// Failure: an exception of theirs passes; what was not told yet is told by the next `process`.
class PortalFollower {
public:
    void start(ZelPortalOptions options);
    void stop() noexcept;
    void process();
    void refresh() noexcept;

    [[nodiscard]] int fileDescriptor() const noexcept;
    [[nodiscard]] short events() const noexcept;
    [[nodiscard]] std::optional<std::chrono::microseconds> nextTimeout() const noexcept;

    [[nodiscard]] ZelPortalStatus status() const noexcept { return status_; }
    [[nodiscard]] const std::string& reason() const noexcept { return reason_; }
    [[nodiscard]] bool busHasAnswered() const noexcept { return bus_ && bus_->ready(); }
    [[nodiscard]] std::optional<std::uint32_t> colorScheme() const noexcept { return scheme_; }

private:
    using Clock = std::chrono::steady_clock;

    void connect();
    void ask();
    void askAgain();
    void handle(PortalBus::Event event);
    void answered(const PortalAnswer& answer);
    void portalIsAbsent(const std::string& reason);
    void busIsAbsent(const std::string& reason);
    void closed(const std::string& reason);
    void overdue();
    void handleTimers();
    void retryLater();
    void conclude(ZelPortalStatus status, const std::string& reason);
    void tell();
    [[nodiscard]] bool hasAnswer() const noexcept;

    ZelPortalOptions options_;
    std::string address_; // empty: there is no bus to connect to
    std::unique_ptr<PortalBus> bus_;

    std::optional<Clock::time_point> deadline_; // set while an answer is still in time
    std::optional<Clock::time_point> retryAt_;
    std::chrono::milliseconds retryDelay_{0}; // of the next failure
    bool askAgain_ = false;                   // something changed while a question was under way

    ZelPortalStatus status_ = ZelPortalStatus::Stopped;
    std::string reason_;
    std::optional<std::uint32_t> scheme_;
    bool appearanceUntold_ = false; // the application object may have another appearance
    bool statusUntold_ = false;     // the host has not heard of status or reason
};

} // namespace zel::inline v1
