// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyleManagerMode.h>

#include <memory>
#include <string>
#include <string_view>

namespace zel::tool {

/// The manager's mode of an identifier; nil where there is none.
[[nodiscard]] std::shared_ptr<ZelStyleManagerMode> modeWithIdentifier(std::string_view identifier);

/// The mode that applies: the stored one, or the first where what is stored is no mode's
/// identifier.
[[nodiscard]] std::shared_ptr<ZelStyleManagerMode> modeInForce();

/// The identifiers of all modes: "a, b, c".
[[nodiscard]] std::string knownModes();

/// Chooses a mode and stores it; tells on standard error what keeps it from being chosen or stored.
/// Answers the exit code for that.
int chooseMode(std::string_view identifier);

} // namespace zel::tool
