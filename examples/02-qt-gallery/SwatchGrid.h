// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include <vector>

namespace gallery {

class Swatch;

/// The groups in which the attributes can be looked at.
enum class Group { All, Palette, Text, Controls, Lists, Bars };

struct GroupName {
    Group group;
    const char* name;
};
inline constexpr GroupName groupNames[] = {
    {Group::All, "All attributes"},     {Group::Palette, "Base palette"},
    {Group::Text, "Surfaces and text"}, {Group::Controls, "Accent and controls"},
    {Group::Lists, "Lines and tables"}, {Group::Bars, "Bars"},
};

/// A swatch for each predefined attribute, those of a group in full strength.
class SwatchGrid : public QWidget {
public:
    explicit SwatchGrid(QWidget* parent);

    [[nodiscard]] const std::vector<Swatch*>& swatches() const noexcept { return swatches_; }
    void emphasize(Group group);

    /// How many attributes a group has.
    [[nodiscard]] static int countOf(Group group);

private:
    std::vector<Swatch*> swatches_; // child widgets, in the order of the attributes
};

} // namespace gallery
