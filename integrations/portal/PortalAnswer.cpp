// SPDX-License-Identifier: Apache-2.0
#include "PortalAnswer.h"

#include "PortalNames.h"

#include <string_view>

namespace zel::inline v1 {
namespace {

// Portals wrap the value in one variant or two; a few more are let pass, not as many as a sender
// likes.
constexpr int deepestVariant = 8;

std::optional<std::uint32_t> unwrapped(sd_bus_message& reply) {
    if (sd_bus_message_has_signature(&reply, "v") <= 0) {
        return std::nullopt;
    }
    for (int depth = 0; depth <= deepestVariant; ++depth) {
        char type = 0;
        const char* contents = nullptr;
        if (sd_bus_message_peek_type(&reply, &type, &contents) <= 0) {
            return std::nullopt;
        }
        if (type == SD_BUS_TYPE_UINT32) {
            std::uint32_t value = 0;
            return sd_bus_message_read_basic(&reply, type, &value) > 0 ? std::optional(value)
                                                                       : std::nullopt;
        }
        if (type != SD_BUS_TYPE_VARIANT ||
            sd_bus_message_enter_container(&reply, type, contents) <= 0) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

PortalAnswer readError(sd_bus_message& reply, const sd_bus_error& error) {
    const char* const sender = sd_bus_message_get_sender(&reply);
    const bool fromBus = sender != nullptr && std::string_view(sender) == busName;
    std::string text = fromBus ? "The bus can't reach the desktop portal: "
                               : "The desktop portal has no colour scheme: ";
    text += error.name != nullptr ? error.name : "an error without a name";
    if (error.message != nullptr && *error.message != '\0') {
        text += ": ";
        text += error.message;
    }
    return {fromBus ? PortalAnswer::Kind::Unreachable : PortalAnswer::Kind::Error, std::nullopt,
            std::move(text)};
}

} // namespace

PortalAnswer readAnswer(sd_bus_message& reply) {
    if (const sd_bus_error* const error = sd_bus_message_get_error(&reply); error != nullptr) {
        return readError(reply, *error);
    }
    const auto scheme = unwrapped(reply);
    return {PortalAnswer::Kind::Value, scheme,
            scheme ? "Following the desktop's colour scheme."
                   : "The desktop portal's colour scheme is not a number; light."};
}

} // namespace zel::inline v1
