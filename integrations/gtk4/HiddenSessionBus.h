// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace zel::inline v1 {

/// For as long as it lives, GIO finds no session bus, by what the environment says. GTK asks for
/// the bus while it starts, and waits for it without end: a bus that is there and silent would keep
/// the first frame back for good. With no bus at all GTK goes on at once. Threads: made and ended
/// on the main thread, before other threads read the environment, or where the host can answer for
/// it. Failure: none.
class HiddenSessionBus {
public:
    HiddenSessionBus();
    /// The environment says again what it said.
    ~HiddenSessionBus();
    HiddenSessionBus(const HiddenSessionBus&) = delete;
    HiddenSessionBus& operator=(const HiddenSessionBus&) = delete;

private:
    std::optional<std::string> address_; // what the environment said
};

} // namespace zel::inline v1
