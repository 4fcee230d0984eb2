// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace zel::tool {

/// Text from outside made fit for a message: control characters become "?", so that it stays on one
/// line and moves no cursor, and what is too long is cut.
[[nodiscard]] std::string quotable(std::string_view text);

/// Writes "zelstyle: " and the text as one line on standard error.
void printMessage(std::string_view text);

} // namespace zel::tool
