// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/BusValue.h"
#include "tests/fuzz/SignalName.h"

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zelfuzz {

using Message = std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)>;

/// The other end of a connection to the session bus: bus daemon and desktop portal in one, on a
/// socket of the process's own. Says whatever it is told to, in anybody's name.
/// Owns: its socket and the one connection made to it. Threads: one; no operation waits.
class BusPeer {
public:
    /// Answers a question for the colour scheme, now, later or never.
    using Answer = std::function<void(sd_bus_message* question)>;

    explicit BusPeer(Answer answer);
    ~BusPeer();
    BusPeer(const BusPeer&) = delete;
    BusPeer& operator=(const BusPeer&) = delete;

    [[nodiscard]] std::string address() const { return "unix:abstract=" + name_; }

    /// Handles what has come in; false where that was nothing.
    bool process();

    /// Sends a signal in a sender's name. False where the bus allows no such values, or no such
    /// name: then nothing was sent.
    bool emit(const SignalName& name, const std::vector<BusValue>& values, const char* sender);

private:
    static int received(sd_bus_message* message, void* self, sd_bus_error*);
    bool acceptConnection();
    void reply(sd_bus_message* call);

    const Answer answer_;
    const std::string name_; // of the socket
    const int socket_;
    std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)> bus_{nullptr, sd_bus_close_unref};
};

/// Appends values to a message, all or nothing that could be sent.
[[nodiscard]] bool appendAll(const std::vector<BusValue>& values, sd_bus_message* message);

/// Whether the bus allows a name, by one of its checks for a kind of names.
[[nodiscard]] bool isAllowed(const std::string& name, int (*isValid)(const char*));

} // namespace zelfuzz
