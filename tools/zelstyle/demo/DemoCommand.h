// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/Options.h"

namespace zel::tool {

/// Runs the main job through a prepared story, with what happens told between the deliveries. The
/// mode chosen in it is kept in memory only. Answers the exit code.
int runDemo(const DemoOptions& options);

} // namespace zel::tool
