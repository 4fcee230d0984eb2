// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PortalAnswer.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

/// One connection to a bus, subscribed to the portal's colour scheme and to the portal's coming and
/// going. All of sd-bus stays behind it, errors included.
/// Owns: the connection, its subscriptions and at most one question under way.
/// Threads: one; no operation waits. Nothing of the host runs inside sd-bus: its callbacks only
/// note what happened.
/// Failure: a connection that has failed says `Closed`, and `failure` why; it can only be
/// destroyed.
class PortalBus {
public:
    /// What one message meant.
    enum class Event {
        None,           ///< there was no message
        Other,          ///< nothing that matters here
        SettingChanged, ///< the portal says that the colour scheme is another one
        PortalCame,     ///< somebody has become the portal
        PortalLeft,     ///< nobody is the portal any more
        Answered,       ///< `answer` holds what came of `ask`
        Closed,         ///< the connection is gone
    };

    /// Begins to connect and to subscribe; `process` goes on. False where that fails at once.
    bool open(const std::string& address);

    /// Asks for the colour scheme, behind the subscriptions, so that no change falls in between. A
    /// question under way is dropped.
    bool ask();

    /// Handles one message.
    [[nodiscard]] Event process();

    [[nodiscard]] const PortalAnswer& answer() const noexcept { return answer_; }
    [[nodiscard]] const std::string& failure() const noexcept { return failure_; }
    /// Whether the bus has let us in.
    [[nodiscard]] bool ready() const noexcept { return sd_bus_is_ready(bus_.get()) > 0; }
    /// Whether the bus has said that nobody is the portal.
    [[nodiscard]] bool portalIsGone() const noexcept { return owner_ && owner_->empty(); }

    [[nodiscard]] int fileDescriptor() const noexcept;
    [[nodiscard]] short events() const noexcept;
    /// When `process` wants to be called at the latest, message or not.
    [[nodiscard]] std::optional<std::chrono::steady_clock::time_point> wakeUp() const noexcept;

private:
    // Closing without flushing: flushing would wait for the bus.
    struct Close {
        void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
    };
    struct Unref {
        void operator()(sd_bus_slot* slot) const noexcept { sd_bus_slot_unref(slot); }
    };
    using Slot = std::unique_ptr<sd_bus_slot, Unref>;

    template <void (PortalBus::*handler)(sd_bus_message&)>
    static int called(sd_bus_message* message, void* self, sd_bus_error*) noexcept;

    bool connect(const std::string& address);
    bool subscribe(Slot& slot, const std::string& rule, sd_bus_message_handler_t handler);
    bool fail(const char* what, int error);
    void subscribed(sd_bus_message& reply);
    void settingChanged(sd_bus_message& signal);
    void ownerChanged(sd_bus_message& signal);
    void answered(sd_bus_message& reply);

    std::unique_ptr<sd_bus, Close> bus_;
    Slot settings_; // after the bus, so that subscriptions go first
    Slot owners_;
    Slot question_;
    std::optional<std::string> owner_; // unique name of the portal, "" for nobody, none: not known
    PortalAnswer answer_;
    std::string failure_;
    Event event_ = Event::None;
};

} // namespace zel::inline v1
