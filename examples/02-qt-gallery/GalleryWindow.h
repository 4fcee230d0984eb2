// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include <vector>

class QLayout;
class QMenu;

namespace gallery {

class Card;
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
    /// The same of the derived style's card.
    [[nodiscard]] QPoint tintedPoint() const;
    /// Whether the window's own style is dark.
    [[nodiscard]] bool isDark();
    /// Opens the mode menu and chooses the mode of this identifier; false where it isn't there.
    bool chooseMode(const QString& identifier);

private:
    QLayout* makeHeading();
    QLayout* makeCards();

    SwatchGrid* grid_;
    Sidebar* sidebar_;
    Card* tinted_ = nullptr;
    QMenu* modes_ = nullptr;
};

} // namespace gallery
