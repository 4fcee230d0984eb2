// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/BusPeer.h"

#include "integrations/portal/PortalNames.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zelfuzz {
namespace {

Message taken(sd_bus_message* message) {
    return {message, sd_bus_message_unref};
}

/// A name in the kernel's own space of socket names, so that no file is left behind.
std::string nameOfSocket() {
    static int count = 0;
    return "zelfuzz-" + std::to_string(::getpid()) + '-' + std::to_string(count++);
}

int listeningSocket(const std::string& name) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    require(socket >= 0 && ::bind(socket, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
                ::listen(socket, 1) == 0,
            "a socket can be listened to", name);
    return socket;
}

} // namespace

BusPeer::BusPeer(Answer answer)
    : answer_(std::move(answer)), name_(nameOfSocket()), socket_(listeningSocket(name_)) {}

BusPeer::~BusPeer() {
    ::close(socket_);
}

bool BusPeer::acceptConnection() {
    const int connection = ::accept4(socket_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (connection < 0) {
        return false;
    }
    sd_bus* made = nullptr;
    sd_id128_t id{};
    id.bytes[0] = 1;
    require(sd_bus_new(&made) >= 0, "a connection can be made");
    bus_.reset(made);
    require(sd_bus_set_fd(made, connection, connection) >= 0 &&
                sd_bus_set_server(made, 1, id) >= 0 && sd_bus_set_trusted(made, 1) >= 0 &&
                sd_bus_add_filter(made, nullptr, received, this) >= 0 && sd_bus_start(made) >= 0,
            "a connection can be served");
    return true;
}

bool BusPeer::process() {
    if (!bus_) {
        return acceptConnection();
    }
    return sd_bus_process(bus_.get(), nullptr) > 0;
}

int BusPeer::received(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_call(message, nullptr, nullptr) > 0) {
        static_cast<BusPeer*>(self)->reply(message);
    }
    return 1;
}

void BusPeer::reply(sd_bus_message* call) {
    const std::string_view member = sd_bus_message_get_member(call);
    if (member == "Read") {
        answer_(call);
        return;
    }
    sd_bus_message* made = nullptr;
    require(sd_bus_message_new_method_return(call, &made) >= 0 &&
                sd_bus_message_set_sender(made, zel::busName) >= 0 &&
                (member != "Hello" || sd_bus_message_append(made, "s", ":1.1") >= 0) &&
                sd_bus_send(bus_.get(), taken(made).get(), nullptr) >= 0,
            "the bus can answer");
}

bool BusPeer::emit(const SignalName& name, const std::vector<BusValue>& values,
                   const char* sender) {
    if (!isAllowed(name.path, sd_bus_object_path_is_valid) ||
        !isAllowed(name.interface, sd_bus_interface_name_is_valid) ||
        !isAllowed(name.member, sd_bus_member_name_is_valid)) {
        return false;
    }
    sd_bus_message* made = nullptr;
    require(sd_bus_message_new_signal(bus_.get(), &made, name.path.c_str(), name.interface.c_str(),
                                      name.member.c_str()) >= 0,
            "a signal can be made", name.path);
    const Message signal = taken(made);
    return sd_bus_message_set_sender(made, sender) >= 0 && appendAll(values, made) &&
           sd_bus_send(bus_.get(), made, nullptr) >= 0;
}

bool appendAll(const std::vector<BusValue>& values, sd_bus_message* message) {
    return std::ranges::all_of(values,
                               [&](const BusValue& value) { return value.appendTo(message); });
}

bool isAllowed(const std::string& name, int (*isValid)(const char*)) {
    return name.find('\0') == std::string::npos && isValid(name.c_str()) > 0;
}

} // namespace zelfuzz
