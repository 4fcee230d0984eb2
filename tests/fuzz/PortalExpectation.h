// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/BusValue.h"

#include <ZelStyleKit/ZelPortalAppearance.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelfuzz {

using Status = zel::ZelPortalStatus;
using Values = std::vector<BusValue>;

inline constexpr const char* portalsName = ":1.5";

/// How the portal answers a question.
struct Reply {
    std::string sender = portalsName;
    std::string error; ///< an error's name; empty: no error
    Values values{BusValue{'v', 0, 0, {}, {BusValue{'v', 0, 0, {}, {BusValue{}}}}}};
    std::string text;
};

/// The colour scheme that a reply's values are: a number of 32 bits without sign, alone, in one
/// variant or in as many as eight.
[[nodiscard]] std::optional<std::uint32_t> schemeOf(const Values& values);

/// What whoever follows the portal is expected to have understood, from the first question on.
struct Expectation {
    Status status = Status::Connecting;
    std::optional<std::uint32_t> scheme;
    std::optional<std::string> owner; ///< of the portal's name, as far as it is known
    int questions = 1;

    void take(const Reply& reply);
    void hearOfChange(const Values& values, const std::string& sender);
    void hearOfOwner(const Values& values, const std::string& sender);

private:
    void leave();
};

} // namespace zelfuzz
