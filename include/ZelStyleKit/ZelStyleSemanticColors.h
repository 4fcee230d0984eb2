// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSColor.h>

#include <optional>

namespace zel::inline v1 {

/// A style's colours by what they are for, which the provider "main" fills from the base palette.
/// A read gives the effective value; absent, null and a value of another kind are none. A write is
/// `ZelStyle::setValue` under the key; none is stored as the null marker.
/// Owns, refers to: nothing. Part of `ZelStyle`, the one class that derives from it.
/// Threads: any; a read takes no lock unless the merged values were dropped.
/// Failure: none.
class ZEL_EXPORT ZelStyleSemanticColors {
public:
    // Backgrounds.

    /// `backgroundColor`, `setBackgroundColor:`. Behind the content itself: text, pictures, an
    /// empty page.
    [[nodiscard]] std::optional<NSColor> backgroundColor() const;
    void setBackgroundColor(const std::optional<NSColor>& value);

    /// `backgroundColorSecondary`, `setBackgroundColorSecondary:`. Behind what surrounds the
    /// content: the window, side bars, groups of settings.
    [[nodiscard]] std::optional<NSColor> backgroundColorSecondary() const;
    void setBackgroundColorSecondary(const std::optional<NSColor>& value);

    /// `backgroundColorTertiary`, `setBackgroundColorTertiary:`. Behind what lies on the secondary
    /// background: cards, fields, panels.
    [[nodiscard]] std::optional<NSColor> backgroundColorTertiary() const;
    void setBackgroundColorTertiary(const std::optional<NSColor>& value);

    // Text.

    /// `labelColor`, `setLabelColor:`. Text that is read first: titles, body text, names.
    [[nodiscard]] std::optional<NSColor> labelColor() const;
    void setLabelColor(const std::optional<NSColor>& value);

    /// `labelColorSecondary`, `setLabelColorSecondary:`. Text that explains other text: subtitles,
    /// captions, units.
    [[nodiscard]] std::optional<NSColor> labelColorSecondary() const;
    void setLabelColorSecondary(const std::optional<NSColor>& value);

    /// `labelColorTertiary`, `setLabelColorTertiary:`. Text that may be overlooked: placeholders,
    /// what is disabled.
    [[nodiscard]] std::optional<NSColor> labelColorTertiary() const;
    void setLabelColorTertiary(const std::optional<NSColor>& value);

    /// `labelColorQuarternary`, `setLabelColorQuarternary:`. The faintest text: watermarks, hints
    /// in an empty page. Deliberate: spelt so, it is part of the public vocabulary.
    [[nodiscard]] std::optional<NSColor> labelColorQuarternary() const;
    void setLabelColorQuarternary(const std::optional<NSColor>& value);

    // Accent.

    /// `accentColor`, `setAccentColor:`. The application's own colour: links, focus rings, what is
    /// on. Preset it, and controls and bars take it.
    [[nodiscard]] std::optional<NSColor> accentColor() const;
    void setAccentColor(const std::optional<NSColor>& value);

    /// `accentColorSecondary`, `setAccentColorSecondary:`. The accent as a tint behind something:
    /// selected text, a row under the pointer.
    [[nodiscard]] std::optional<NSColor> accentColorSecondary() const;
    void setAccentColorSecondary(const std::optional<NSColor>& value);

    // Controls: a fill and the label on it go together.

    /// `controlColor`, `setControlColor:`. The fill of a control that is in use: a default button,
    /// a checked box, a slider's track.
    [[nodiscard]] std::optional<NSColor> controlColor() const;
    void setControlColor(const std::optional<NSColor>& value);

    /// `controlLabelColor`, `setControlLabelColor:`. Text and glyphs on `controlColor`.
    [[nodiscard]] std::optional<NSColor> controlLabelColor() const;
    void setControlLabelColor(const std::optional<NSColor>& value);

    /// `controlColorInactive`, `setControlColorInactive:`. The fill of a control that is disabled.
    [[nodiscard]] std::optional<NSColor> controlColorInactive() const;
    void setControlColorInactive(const std::optional<NSColor>& value);

    /// `controlLabelColorInactive`, `setControlLabelColorInactive:`. Text and glyphs on
    /// `controlColorInactive`.
    [[nodiscard]] std::optional<NSColor> controlLabelColorInactive() const;
    void setControlLabelColorInactive(const std::optional<NSColor>& value);

    /// `controlColorUnselected`, `setControlColorUnselected:`. The fill of one control among
    /// several of which another is selected: a segment, a tab.
    [[nodiscard]] std::optional<NSColor> controlColorUnselected() const;
    void setControlColorUnselected(const std::optional<NSColor>& value);

    /// `controlLabelColorUnselected`, `setControlLabelColorUnselected:`. Text and glyphs on
    /// `controlColorUnselected`.
    [[nodiscard]] std::optional<NSColor> controlLabelColorUnselected() const;
    void setControlLabelColorUnselected(const std::optional<NSColor>& value);

    /// `controlColorDestructive`, `setControlColorDestructive:`. The fill of a control that
    /// deletes, or does what can't be undone.
    [[nodiscard]] std::optional<NSColor> controlColorDestructive() const;
    void setControlColorDestructive(const std::optional<NSColor>& value);

    /// `controlLabelColorDestructive`, `setControlLabelColorDestructive:`. Text and glyphs on
    /// `controlColorDestructive`.
    [[nodiscard]] std::optional<NSColor> controlLabelColorDestructive() const;
    void setControlLabelColorDestructive(const std::optional<NSColor>& value);

    // Lines.

    /// `separatorColor`, `setSeparatorColor:`. Lines between areas: panes, bars, groups.
    [[nodiscard]] std::optional<NSColor> separatorColor() const;
    void setSeparatorColor(const std::optional<NSColor>& value);

    /// `separatorColorContent`, `setSeparatorColorContent:`. Fainter lines inside one area: between
    /// the rows of a list.
    [[nodiscard]] std::optional<NSColor> separatorColorContent() const;
    void setSeparatorColorContent(const std::optional<NSColor>& value);

    // Tables and lists.

    /// `overlayTableBackgroundColor`, `setOverlayTableBackgroundColor:`. Behind the rows of a table
    /// that lies over a window: in a popover, a menu, a sheet.
    [[nodiscard]] std::optional<NSColor> overlayTableBackgroundColor() const;
    void setOverlayTableBackgroundColor(const std::optional<NSColor>& value);

    /// `overlayTableBackgroundSelectedColor`, `setOverlayTableBackgroundSelectedColor:`. Behind the
    /// selected row of such a table.
    [[nodiscard]] std::optional<NSColor> overlayTableBackgroundSelectedColor() const;
    void setOverlayTableBackgroundSelectedColor(const std::optional<NSColor>& value);

    /// `tableBackgroundColor`, `setTableBackgroundColor:`. Behind the rows of a table in a window.
    [[nodiscard]] std::optional<NSColor> tableBackgroundColor() const;
    void setTableBackgroundColor(const std::optional<NSColor>& value);

    /// `tableBackgroundSelectedColor`, `setTableBackgroundSelectedColor:`. Behind the selected row
    /// of a table in a window.
    [[nodiscard]] std::optional<NSColor> tableBackgroundSelectedColor() const;
    void setTableBackgroundSelectedColor(const std::optional<NSColor>& value);

    /// `tableTextColor`, `setTableTextColor:`. Text of a row.
    [[nodiscard]] std::optional<NSColor> tableTextColor() const;
    void setTableTextColor(const std::optional<NSColor>& value);

    /// `tableTextSelectedColor`, `setTableTextSelectedColor:`. Text of the selected row.
    [[nodiscard]] std::optional<NSColor> tableTextSelectedColor() const;
    void setTableTextSelectedColor(const std::optional<NSColor>& value);

    /// `tableSectionHeaderTextColor`, `setTableSectionHeaderTextColor:`. Text of the header above a
    /// section of rows.
    [[nodiscard]] std::optional<NSColor> tableSectionHeaderTextColor() const;
    void setTableSectionHeaderTextColor(const std::optional<NSColor>& value);

    /// `tableSectionHeaderBackgroundColor`, `setTableSectionHeaderBackgroundColor:`. Behind the
    /// header above a section of rows.
    [[nodiscard]] std::optional<NSColor> tableSectionHeaderBackgroundColor() const;
    void setTableSectionHeaderBackgroundColor(const std::optional<NSColor>& value);

    // Bars.

    /// `navigationBarTextColor`, `setNavigationBarTextColor:`. The title of the bar by which one
    /// moves between pages, and other text in it.
    [[nodiscard]] std::optional<NSColor> navigationBarTextColor() const;
    void setNavigationBarTextColor(const std::optional<NSColor>& value);

    /// `navigationBarTintColor`, `setNavigationBarTintColor:`. Buttons and icons in the navigation
    /// bar.
    [[nodiscard]] std::optional<NSColor> navigationBarTintColor() const;
    void setNavigationBarTintColor(const std::optional<NSColor>& value);

    /// `navigationBarBackgroundColor`, `setNavigationBarBackgroundColor:`. Behind the navigation
    /// bar.
    [[nodiscard]] std::optional<NSColor> navigationBarBackgroundColor() const;
    void setNavigationBarBackgroundColor(const std::optional<NSColor>& value);

    /// `toolbarTextColor`, `setToolbarTextColor:`. Text in a bar of tools.
    [[nodiscard]] std::optional<NSColor> toolbarTextColor() const;
    void setToolbarTextColor(const std::optional<NSColor>& value);

    /// `toolbarTintColor`, `setToolbarTintColor:`. Buttons and icons in the toolbar.
    [[nodiscard]] std::optional<NSColor> toolbarTintColor() const;
    void setToolbarTintColor(const std::optional<NSColor>& value);

    /// `toolbarBackgroundColor`, `setToolbarBackgroundColor:`. Behind the toolbar.
    [[nodiscard]] std::optional<NSColor> toolbarBackgroundColor() const;
    void setToolbarBackgroundColor(const std::optional<NSColor>& value);

    ZelStyleSemanticColors(const ZelStyleSemanticColors&) = delete;
    ZelStyleSemanticColors& operator=(const ZelStyleSemanticColors&) = delete;

private:
    friend class ZelStyle; // no other class: every operation takes the receiver for a style
    ZelStyleSemanticColors() = default;
    ~ZelStyleSemanticColors() = default;
};

} // namespace zel::inline v1
