// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/Options.h"

namespace zel::tool {

/// Writes the palettes of one scheme, or of light and dark. Answers the exit code.
int runPalette(const PaletteOptions& options);

} // namespace zel::tool
