// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SwatchGrid.h"

#include <ZelStyleKit/ZelGtkModeMenu.h>

#include <gtk/gtk.h>

#include <string>

namespace gallery {

/// The window: the sidebar, and beside it a bar with the mode menu, the cards and the swatches.
/// Owns: the window, which it closes at its end.
class GalleryWindow {
public:
    GalleryWindow();
    ~GalleryWindow();
    GalleryWindow(const GalleryWindow&) = delete;
    GalleryWindow& operator=(const GalleryWindow&) = delete;

    [[nodiscard]] GtkWidget* widget() const { return window_; }
    /// Whether the window's own style is dark.
    [[nodiscard]] bool isDark() const;
    /// Chooses the item of the mode menu that stands for a mode; false where there is none.
    bool chooseMode(const std::string& identifier) const;

private:
    GtkWidget* makeBar();

    SwatchGrid grid_;
    zel::ZelGtkModeMenu modes_;
    GtkWidget* const window_;
    GtkWidget* modeButton_ = nullptr;
};

} // namespace gallery
