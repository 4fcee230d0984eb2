// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/Script.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelfuzz {

/// A value in a message on the bus, as a tree that remembers what it is. Written in words:
///   y b n q i u x t d NUMBER    s o g TEXT       basic values
///   v VALUE                     a variant
///   ( VALUE... )                a structure
///   a VALUE... .                an array of the values of the first one's type
///   a { VALUE VALUE } ... .     a dictionary
struct BusValue {
    char type = 'u'; ///< as in a signature; '(' and '{' for what those begin
    std::uint64_t integer = 0;
    double number = 0;
    std::string text;
    std::vector<BusValue> parts;

    /// The next value of a line; nothing where there is none that makes sense.
    static std::optional<BusValue> read(Script& script, int depth = 0);
    /// All values of the rest of a line.
    static std::vector<BusValue> readAll(Script& script);

    [[nodiscard]] std::string signature() const;
    /// Appends it to a message. False where the bus doesn't allow such a value; the message is then
    /// of no more use.
    [[nodiscard]] bool appendTo(sd_bus_message* message) const;
};

} // namespace zelfuzz
