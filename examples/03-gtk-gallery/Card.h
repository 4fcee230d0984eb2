// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtk/gtk.h>

#include <initializer_list>

namespace gallery {

/// The class of an area whose colour is looked at, by its name.
inline constexpr const char* surfaceClass = "surface";

/// A box with one of the style sheet's classes.
GtkWidget* makeBox(GtkOrientation orientation, int spacing, const char* cssClass = nullptr);

/// A text with one of the style sheet's classes, at the left.
GtkWidget* makeText(const char* text, const char* cssClass);

/// A raised area with a title and a word on what is in it; widgets are appended to it.
GtkWidget* makeCard(const char* title, const char* about);

/// A row of widgets, each as wide as it wants, or all the same.
GtkWidget* makeRow(std::initializer_list<GtkWidget*> widgets, bool alike = false);

} // namespace gallery
