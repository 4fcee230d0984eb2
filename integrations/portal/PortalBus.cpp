// SPDX-License-Identifier: Apache-2.0
#include "PortalBus.h"

#include "PortalNames.h"

#include <cstring>
#include <string_view>
#include <system_error>

namespace zel::inline v1 {
namespace {

std::string_view senderOf(sd_bus_message& message) {
    const char* const sender = sd_bus_message_get_sender(&message);
    return sender != nullptr ? sender : "";
}

std::string settingsRule() {
    return std::string("type='signal',sender='") + portalName + "',path='" + portalPath +
           "',interface='" + settingsInterface + "',member='SettingChanged',arg0='" +
           appearanceNamespace + "'";
}

std::string ownersRule() {
    return std::string("type='signal',sender='") + busName + "',path='" + busPath +
           "',interface='" + busName + "',member='NameOwnerChanged',arg0='" + portalName + "'";
}

} // namespace

// An exception must not pass through sd-bus, which is C; there is none but for lack of memory.
template <void (PortalBus::*handler)(sd_bus_message&)>
int PortalBus::called(sd_bus_message* message, void* self, sd_bus_error* /*error*/) noexcept {
    auto& bus = *static_cast<PortalBus*>(self);
    try {
        (bus.*handler)(*message);
    } catch (...) {
        bus.event_ = Event::Closed;
    }
    return 0;
}

bool PortalBus::open(const std::string& address) {
    return connect(address) && subscribe(owners_, ownersRule(), called<&PortalBus::ownerChanged>) &&
           subscribe(settings_, settingsRule(), called<&PortalBus::settingChanged>);
}

bool PortalBus::connect(const std::string& address) {
    sd_bus* made = nullptr;
    if (const int result = sd_bus_new(&made); result < 0) {
        return fail("make a connection", result);
    }
    bus_.reset(made);
    int result = sd_bus_set_address(made, address.c_str());
    if (result >= 0) {
        result = sd_bus_set_bus_client(made, 1);
    }
    if (result >= 0) {
        result = sd_bus_negotiate_fds(made, 0);
    }
    // How long an answer may take is decided elsewhere: a late one still counts.
    if (result >= 0) {
        result = sd_bus_set_method_call_timeout(made, UINT64_MAX);
    }
    // Connects the socket and queues the greeting; both go on in `process`.
    if (result >= 0) {
        result = sd_bus_start(made);
    }
    return result >= 0 || fail("connect to the session bus", result);
}

bool PortalBus::subscribe(Slot& slot, const std::string& rule, sd_bus_message_handler_t handler) {
    sd_bus_slot* made = nullptr;
    const int result = sd_bus_add_match_async(bus_.get(), &made, rule.c_str(), handler,
                                              called<&PortalBus::subscribed>, this);
    slot.reset(made);
    return result >= 0 || fail("subscribe to the desktop portal", result);
}

bool PortalBus::fail(const char* what, int error) {
    failure_ = std::string("Can't ") + what + ": " + std::generic_category().message(-error) + ".";
    event_ = Event::Closed;
    return false;
}

bool PortalBus::ask() {
    question_.reset();
    sd_bus_slot* made = nullptr;
    const int result = sd_bus_call_method_async(
        bus_.get(), &made, portalName, portalPath, settingsInterface, "Read",
        called<&PortalBus::answered>, this, "ss", appearanceNamespace, colorSchemeKey);
    question_.reset(made);
    return result >= 0 || fail("ask the desktop portal", result);
}

PortalBus::Event PortalBus::process() {
    event_ = Event::Other;
    const int result = sd_bus_process(bus_.get(), nullptr);
    if (result < 0) {
        fail("use the session bus", result);
    } else if (sd_bus_is_open(bus_.get()) <= 0) {
        failure_ = "The session bus has closed the connection.";
        event_ = Event::Closed;
    } else if (result == 0) {
        event_ = Event::None;
    }
    return event_;
}

void PortalBus::subscribed(sd_bus_message& reply) {
    if (const sd_bus_error* const error = sd_bus_message_get_error(&reply); error != nullptr) {
        failure_ = std::string("The session bus refuses the subscription: ") + error->name + ".";
        event_ = Event::Closed;
    }
}

void PortalBus::settingChanged(sd_bus_message& signal) {
    // A bus delivers what anybody sends to us by name, whatever we subscribed to. Until the first
    // answer has told who the portal is, anybody's signal counts: the portal alone is asked for it.
    if (owner_ && senderOf(signal) != *owner_) {
        return;
    }
    const char* group = nullptr;
    const char* key = nullptr;
    if (sd_bus_message_read(&signal, "ss", &group, &key) > 0 &&
        std::strcmp(group, appearanceNamespace) == 0 && std::strcmp(key, colorSchemeKey) == 0) {
        event_ = Event::SettingChanged;
    }
}

void PortalBus::ownerChanged(sd_bus_message& signal) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* now = nullptr;
    if (senderOf(signal) == busName &&
        sd_bus_message_read(&signal, "sss", &name, &before, &now) > 0 &&
        std::strcmp(name, portalName) == 0) {
        owner_ = now;
        event_ = owner_->empty() ? Event::PortalLeft : Event::PortalCame;
    }
}

void PortalBus::answered(sd_bus_message& reply) {
    question_.reset();
    const auto sender = senderOf(reply);
    if (owner_ && sender != *owner_ && sender != busName) {
        return; // it was the portal when it was asked, and is not any more
    }
    event_ = Event::Answered;
    answer_ = readAnswer(reply);
    // A portal that was there before us is known by its first answer.
    if (!owner_ && !sender.empty() && sender.front() == ':') {
        owner_ = sender;
    }
}

int PortalBus::fileDescriptor() const noexcept {
    const int descriptor = sd_bus_get_fd(bus_.get());
    return descriptor < 0 ? -1 : descriptor;
}

short PortalBus::events() const noexcept {
    const int events = sd_bus_get_events(bus_.get());
    return events < 0 ? short{0} : static_cast<short>(events);
}

std::optional<std::chrono::steady_clock::time_point> PortalBus::wakeUp() const noexcept {
    // Microseconds of the monotonic clock, which is the steady clock of C++ where sd-bus exists.
    std::uint64_t at = UINT64_MAX;
    if (sd_bus_get_timeout(bus_.get(), &at) <= 0 || at == UINT64_MAX) {
        return std::nullopt;
    }
    return std::chrono::steady_clock::time_point(
        std::chrono::microseconds(static_cast<std::int64_t>(at)));
}

} // namespace zel::inline v1
