// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtk/gtk.h>

namespace gallery {

/// Cards of controls: in the main style, a list, and in the style derived from it.
GtkWidget* makeControls();
GtkWidget* makeList();
GtkWidget* makeTinted();

} // namespace gallery
