// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/Options.h"

namespace zel::tool {

/// Lists the modes, or chooses one and remembers it in the user defaults. Answers the exit code.
int runMode(const ModeOptions& options);

} // namespace zel::tool
