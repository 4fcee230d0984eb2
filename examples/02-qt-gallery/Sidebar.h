// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SwatchGrid.h"

#include <QWidget>

#include <functional>

namespace gallery {

/// The groups of attributes to choose from, always dark, whatever the rest of the window is.
class Sidebar : public QWidget {
public:
    Sidebar(std::function<void(Group)> chosen, QWidget* parent);

    /// A point that shows nothing but its background.
    [[nodiscard]] QPoint emptyPoint() const;
};

} // namespace gallery
