// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <gtk/gtk.h>

namespace gallery {

/// A predefined attribute: its colour, over a chequered ground where that shows through, its name
/// and its value. The style sheet colours it by its key; the value is a change handler's.
GtkWidget* makeSwatch(zel::ZelStyleAttribute attribute);

/// What shows the colour, by name; a name is the attribute's key.
inline constexpr const char* swatchFillClass = "swatch-fill";

} // namespace gallery
