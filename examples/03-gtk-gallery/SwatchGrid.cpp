// SPDX-License-Identifier: Apache-2.0
#include "SwatchGrid.h"

#include "Swatch.h"

namespace gallery {
namespace {

constexpr std::size_t columns = 4;

Group groupOf(std::string_view key) {
    const auto starts = [key](std::string_view word) { return key.starts_with(word); };
    if (starts("background") || starts("label")) {
        return Group::Text;
    }
    if (starts("accent") || starts("control")) {
        return Group::Controls;
    }
    if (starts("separator") || starts("table") || starts("overlayTable")) {
        return Group::Lists;
    }
    return starts("navigationBar") || starts("toolbar") ? Group::Bars : Group::Palette;
}

bool belongs(std::size_t index, Group group) {
    const auto attribute = static_cast<zel::ZelStyleAttribute>(index);
    return group == Group::All || groupOf(zel::ZelStyleAttributeKeyOf(attribute)) == group;
}

} // namespace

// Down the columns, so that what belongs together stands together.
SwatchGrid::SwatchGrid() : grid_(gtk_grid_new()) {
    constexpr std::size_t rows = (zel::ZelStyleAttributeCount + columns - 1) / columns;
    gtk_grid_set_column_spacing(GTK_GRID(grid_), 10);
    gtk_grid_set_row_spacing(GTK_GRID(grid_), 6);
    gtk_grid_set_column_homogeneous(GTK_GRID(grid_), TRUE);
    for (std::size_t index = 0; index < zel::ZelStyleAttributeCount; ++index) {
        swatches_.push_back(makeSwatch(static_cast<zel::ZelStyleAttribute>(index)));
        gtk_grid_attach(GTK_GRID(grid_), swatches_.back(), static_cast<int>(index / rows),
                        static_cast<int>(index % rows), 1, 1);
    }
}

void SwatchGrid::emphasize(Group group) {
    for (std::size_t index = 0; index < swatches_.size(); ++index) {
        gtk_widget_set_opacity(swatches_[index], belongs(index, group) ? 1 : 0.15);
    }
}

int SwatchGrid::countOf(Group group) {
    int count = 0;
    for (std::size_t index = 0; index < zel::ZelStyleAttributeCount; ++index) {
        count += belongs(index, group) ? 1 : 0;
    }
    return count;
}

} // namespace gallery
