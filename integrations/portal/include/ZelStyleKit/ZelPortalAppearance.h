// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

class PortalFollower;

/// How far following the desktop has come. The application is dark only while `Following` or
/// `Lost`, and only where the portal said so last.
enum class ZelPortalStatus {
    Stopped,    ///< not started, or stopped; the appearance stays as it was
    Connecting, ///< on the way to the first answer; the appearance stays as it was
    Following,  ///< the portal has answered; the appearance is the desktop's
    NoBus,      ///< no session bus, or one that refuses or doesn't answer; light
    NoPortal,   ///< nobody on the bus is the desktop portal; light
    NoAnswer,   ///< the portal gives an error, or nothing in time, for its colour scheme; light
    Lost,       ///< bus or portal went away after an answer; the appearance stays as it was
};

/// How to follow. The defaults suit an application.
struct ZelPortalOptions {
    /// Called when the status, or the reason for it, has changed, and after the appearance has:
    /// inside `start`, `process` or `waitForFirstAnswer`, on their thread, with no lock held. It
    /// may call any operation and destroy the object. `reason` is a sentence for a log.
    std::function<void(ZelPortalStatus status, const std::string& reason)> statusChanged;
    /// Without an answer for so long, the status says so; an answer that comes later still counts.
    /// Time is never up before all that has come by then was read. At most 5 minutes.
    std::chrono::milliseconds answerTimeout{1000};
    /// After a failure, tries again after this time, then after twice as long each time, at most 5
    /// minutes. 0: never, other than when bus or portal report a change.
    std::chrono::milliseconds retryAfter{1000};
    /// D-Bus address of the bus; empty: the user's session bus. Only "unix:" addresses are used,
    /// since looking up a host's name or starting a program would block.
    std::string busAddress;
};

/// Sets the application object's effective appearance from the desktop portal's colour scheme: 1
/// is dark, everything else light.
/// Owns: the connection to the session bus. Refers to: the application object, made where needed.
/// Threads: none of its own, and it never blocks; everything happens inside these operations, all
/// on the main thread. The host waits on its own loop: before each wait it asks `fileDescriptor`,
/// `events` and `nextTimeout` anew, and after it, it calls `process`.
/// Failure: nothing raises but the host's own callbacks and observers, whose exceptions pass to
/// the caller, here in order; what goes wrong on the bus becomes a status and is tried again.
class ZEL_EXPORT ZelPortalAppearance final {
public:
    ZelPortalAppearance();
    /// Stops. Usable inside its own callbacks.
    ~ZelPortalAppearance();
    ZelPortalAppearance(const ZelPortalAppearance&) = delete;
    ZelPortalAppearance& operator=(const ZelPortalAppearance&) = delete;

    /// Begins to follow, afresh where it already did. To have the first style right, start before
    /// `ZelStyleManager::setup` and wait for the first answer. Where there is no bus, the status
    /// is `NoBus` on return and nothing needs waiting for but `nextTimeout`.
    void start(ZelPortalOptions options = {});
    /// Leaves the bus. Calls nobody.
    void stop() noexcept;

    /// What to wait for: a descriptor, -1 where there is none, and its poll(2) events. Another
    /// one after a new connection.
    [[nodiscard]] int fileDescriptor() const noexcept;
    [[nodiscard]] short events() const noexcept;
    /// How long to wait at most, from now; round up. None: for as long as it takes.
    [[nodiscard]] std::optional<std::chrono::microseconds> nextTimeout() const noexcept;
    /// Does what can be done without waiting, a bounded number of messages in one call, so that a
    /// flood of them leaves the host its turn. Harmless when nothing is ready.
    void process();

    /// Waits, on its own descriptor only, until the status is other than `Connecting`, but not
    /// longer than `limit`. For a host that wants its first window to open in the right colours.
    ZelPortalStatus waitForFirstAnswer(std::chrono::milliseconds limit = std::chrono::milliseconds{
                                           100});

    /// Asks the portal again, soon. A portal that loses what it asks in turn says nothing of it:
    /// a host that wants to know asks, for example when it becomes the active application.
    void refresh() noexcept;

    [[nodiscard]] ZelPortalStatus status() const noexcept;
    /// Why the status is what it is: a sentence in English, for a log; empty when stopped.
    [[nodiscard]] std::string reason() const;
    /// Whether the bus has let this connection in. While it hasn't, and `status` is `Connecting`,
    /// the bus itself is silent: whatever else the host does on it would have to wait as well.
    [[nodiscard]] bool busHasAnswered() const noexcept;
    /// The number that the portal gave: 0 no preference, 1 dark, 2 light, or any other; none while
    /// there is no valid answer.
    [[nodiscard]] std::optional<std::uint32_t> colorScheme() const noexcept;

private:
    const std::shared_ptr<PortalFollower> follower_; // shared with operations that are running
};

} // namespace zel::inline v1
