// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtk/gtk.h>

#include <array>
#include <string_view>
#include <vector>

namespace gallery {

/// A part of the attributes, by what they are for.
enum class Group { All, Palette, Text, Controls, Lists, Bars };

struct GroupName {
    Group group;
    const char* name;
};
inline constexpr std::array groupNames{
    GroupName{Group::All, "All attributes"},     GroupName{Group::Palette, "Palette"},
    GroupName{Group::Text, "Surfaces and text"}, GroupName{Group::Controls, "Controls"},
    GroupName{Group::Lists, "Lists and lines"},  GroupName{Group::Bars, "Bars"},
};

/// All predefined attributes. Refers to: its swatches, which the window owns.
class SwatchGrid {
public:
    SwatchGrid();

    [[nodiscard]] GtkWidget* widget() const { return grid_; }
    /// Has the swatches of other groups step back.
    void emphasize(Group group);
    [[nodiscard]] static int countOf(Group group);

private:
    GtkWidget* const grid_;
    std::vector<GtkWidget*> swatches_; // by attribute
};

} // namespace gallery
