// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/fuzz/BusValue.h"
#include "tests/fuzz/SignalName.h"

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

/// What whoever follows the portal is expected to do and to have understood, from the first
/// question on.
struct Expectation {
    Status status = Status::Connecting;
    std::optional<std::uint32_t> scheme;
    std::optional<std::string> owner; ///< of the portal's name, as far as it is known
    int questions = 1;

    /// Takes the reply to a question, by the question's number; the first one's is 1.
    void take(int question, const Reply& reply);
    void hear(const SignalName& name, const Values& values, const std::string& sender);
    /// The host, or a change, wants the portal asked.
    void askSoon();
    /// Half of the time goes by that an answer may take.
    void waitForHalfTheTime();

private:
    void hearOfChange(const Values& values, const std::string& sender);
    void hearOfOwner(const Values& values, const std::string& sender);
    void ask();
    void waitNoMore();
    void leave();
    void getNoAnswer();

    int halvesLeft_ = 2;        // of the time for an answer to the last question
    bool mustAskAgain_ = false; // once that question is answered, or overdue
};

} // namespace zelfuzz
