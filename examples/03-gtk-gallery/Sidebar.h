// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SwatchGrid.h"

#include <gtk/gtk.h>

namespace gallery {

/// What stands at the left, pinned to the dark scheme: the groups of attributes, each of which
/// emphasises its swatches. The grid is in the same window.
GtkWidget* makeSidebar(SwatchGrid& grid);

} // namespace gallery
