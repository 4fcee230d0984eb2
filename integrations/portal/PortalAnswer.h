// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <optional>
#include <string>

namespace zel::inline v1 {

/// What came of asking the portal for the colour scheme.
struct PortalAnswer {
    enum class Kind {
        Value,       ///< the portal gave a value, `scheme` where it is a valid one
        Unreachable, ///< the bus answers instead: nobody is the portal, or it left meanwhile
        Error,       ///< the portal, or a backend behind it, can't say
    };
    Kind kind = Kind::Error;
    std::optional<std::uint32_t> scheme;
    std::string text; ///< a sentence about it
};

/// Reads a reply, a value or an error. Untrusted: whatever it holds, the result is one of the
/// above.
[[nodiscard]] PortalAnswer readAnswer(sd_bus_message& reply);

} // namespace zel::inline v1
