// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace zel::inline v1 {

/// The D-Bus address of the user's session bus: DBUS_SESSION_BUS_ADDRESS where it is set, else the
/// socket "bus" in XDG_RUNTIME_DIR; empty where neither is.
[[nodiscard]] std::string sessionBusAddress();

/// The entries of a D-Bus address whose connection can be opened without waiting: sockets on this
/// machine. Empty where there are none.
[[nodiscard]] std::string addressesThatNeverBlock(std::string_view addresses);

} // namespace zel::inline v1
