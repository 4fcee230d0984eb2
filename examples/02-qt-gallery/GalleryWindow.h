// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include <vector>

class QLayout;

namespace gallery {

class Sidebar;
class Swatch;
class SwatchGrid;

/// The window: the sidebar, and beside it a heading with the mode menu, the cards and the swatches.
class GalleryWindow : public QWidget {
public:
    GalleryWindow();

    [[nodiscard]] const std::vector<Swatch*>& swatches() const;
    /// A point of the sidebar that shows nothing but its background.
    [[nodiscard]] QPoint sidebarPoint() const;
    /// Whether the window's own style is dark.
    [[nodiscard]] bool isDark();

private:
    QLayout* makeHeading();
    QLayout* makeCards();

    SwatchGrid* grid_;
    Sidebar* sidebar_;
};

} // namespace gallery
