// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/NSNumber.h>

#include <optional>

namespace zel::inline v1 {

/// What "styleType" holds.
enum ZelStyleType : unsigned long {
    ZelStyleTypeCustom = 0, ///< of a scheme that is neither "light" nor "dark"
    ZelStyleTypeLight = 1,
    ZelStyleTypeDark = 2,
};

/// A style's base colours, which the provider "base" fills. The semantic colours are made of them,
/// and are the better choice wherever one says what is meant (`ZelStyleSemanticColors`). A read
/// gives the effective value; absent, null and a value of another kind are none. A write is
/// `ZelStyle::setValue` under the key; none is stored as the null marker.
/// Owns, refers to: nothing. Part of `ZelStyle`, the one class that derives from it.
/// Threads: any; a read takes no lock unless the merged values were dropped.
/// Failure: none.
class ZEL_EXPORT ZelStyleBasePalette {
public:
    /// `styleType`, `setStyleType:`. Which palette the style was filled with, a `ZelStyleType` as
    /// an unsigned number: for what no colour says, such as another picture in the dark.
    [[nodiscard]] std::optional<NSNumber> styleType() const;
    void setStyleType(const std::optional<NSNumber>& value);

    /// `isDarkStyle`, `isLightStyle`, `isCustomStyle`: which type "styleType" holds; a style that
    /// holds no number there is custom.
    [[nodiscard]] bool isDarkStyle() const;
    [[nodiscard]] bool isLightStyle() const;
    [[nodiscard]] bool isCustomStyle() const;

    // The ramp of greys, from the end of the foreground to that of the background: dark on light or
    // light on dark, as the scheme is.

    /// `grayColor`, `setGrayColor:`. The strongest grey, nearest to the text: icons beside labels,
    /// controls that are not selected.
    [[nodiscard]] std::optional<NSColor> grayColor() const;
    void setGrayColor(const std::optional<NSColor>& value);

    /// `grayColor2`, `setGrayColor2:`. Icons and glyphs that step back behind the labels.
    [[nodiscard]] std::optional<NSColor> grayColor2() const;
    void setGrayColor2(const std::optional<NSColor>& value);

    /// `grayColor3`, `setGrayColor3:`. Secondary icons, axes of a chart.
    [[nodiscard]] std::optional<NSColor> grayColor3() const;
    void setGrayColor3(const std::optional<NSColor>& value);

    /// `grayColor4`, `setGrayColor4:`. Disabled icons and glyphs.
    [[nodiscard]] std::optional<NSColor> grayColor4() const;
    void setGrayColor4(const std::optional<NSColor>& value);

    /// `grayColor5`, `setGrayColor5:`. The middle of the ramp, the same in every scheme: what has
    /// to look alike in all of them.
    [[nodiscard]] std::optional<NSColor> grayColor5() const;
    void setGrayColor5(const std::optional<NSColor>& value);

    /// `grayColor6`, `setGrayColor6:`. Outlines of fields and of controls.
    [[nodiscard]] std::optional<NSColor> grayColor6() const;
    void setGrayColor6(const std::optional<NSColor>& value);

    /// `grayColor7`, `setGrayColor7:`. Thin lines on a background: grids of a chart, rulers.
    [[nodiscard]] std::optional<NSColor> grayColor7() const;
    void setGrayColor7(const std::optional<NSColor>& value);

    /// `grayColor8`, `setGrayColor8:`. Fills that stand out from the background: grooves, tracks,
    /// section headers.
    [[nodiscard]] std::optional<NSColor> grayColor8() const;
    void setGrayColor8(const std::optional<NSColor>& value);

    /// `grayColor9`, `setGrayColor9:`. The faintest grey, nearest to the background: bars, panels,
    /// every other row.
    [[nodiscard]] std::optional<NSColor> grayColor9() const;
    void setGrayColor9(const std::optional<NSColor>& value);

    // The same in every scheme.

    /// `whiteColor`, `setWhiteColor:`. White in every scheme: glyphs on a hue or on a dark picture.
    [[nodiscard]] std::optional<NSColor> whiteColor() const;
    void setWhiteColor(const std::optional<NSColor>& value);

    /// `blackColor`, `setBlackColor:`. Black in every scheme: shadows, glyphs on a light picture.
    [[nodiscard]] std::optional<NSColor> blackColor() const;
    void setBlackColor(const std::optional<NSColor>& value);

    /// `clearColor`, `setClearColor:`. Fully transparent: where a colour is asked for and nothing
    /// may show.
    [[nodiscard]] std::optional<NSColor> clearColor() const;
    void setClearColor(const std::optional<NSColor>& value);

    // Hues: the platform's where it has them.

    /// `blueColor`, `setBlueColor:`. Links and information; the accent, unless the application
    /// brings its own.
    [[nodiscard]] std::optional<NSColor> blueColor() const;
    void setBlueColor(const std::optional<NSColor>& value);

    /// `greenColor`, `setGreenColor:`. Success: what is done, valid or switched on.
    [[nodiscard]] std::optional<NSColor> greenColor() const;
    void setGreenColor(const std::optional<NSColor>& value);

    /// `orangeColor`, `setOrangeColor:`. Warnings: what needs attention soon.
    [[nodiscard]] std::optional<NSColor> orangeColor() const;
    void setOrangeColor(const std::optional<NSColor>& value);

    /// `purpleColor`, `setPurpleColor:`. A category of its own in charts, tags and labels; no state
    /// is shown by it.
    [[nodiscard]] std::optional<NSColor> purpleColor() const;
    void setPurpleColor(const std::optional<NSColor>& value);

    /// `redColor`, `setRedColor:`. Errors, and controls that destroy something.
    [[nodiscard]] std::optional<NSColor> redColor() const;
    void setRedColor(const std::optional<NSColor>& value);

    /// `yellowColor`, `setYellowColor:`. Highlights: marked text, hits of a search, stars.
    [[nodiscard]] std::optional<NSColor> yellowColor() const;
    void setYellowColor(const std::optional<NSColor>& value);

    /// `pinkColor`, `setPinkColor:`. Favourites and personal things; a further colour of charts and
    /// tags.
    [[nodiscard]] std::optional<NSColor> pinkColor() const;
    void setPinkColor(const std::optional<NSColor>& value);

    /// `indigoColor`, `setIndigoColor:`. A further colour of charts and tags, beside blue and
    /// purple.
    [[nodiscard]] std::optional<NSColor> indigoColor() const;
    void setIndigoColor(const std::optional<NSColor>& value);

    /// `tealColor`, `setTealColor:`. A further colour of charts and tags, beside blue and green.
    [[nodiscard]] std::optional<NSColor> tealColor() const;
    void setTealColor(const std::optional<NSColor>& value);

    ZelStyleBasePalette(const ZelStyleBasePalette&) = delete;
    ZelStyleBasePalette& operator=(const ZelStyleBasePalette&) = delete;

private:
    friend class ZelStyle; // no other class: every operation takes the receiver for a style
    ZelStyleBasePalette() = default;
    ~ZelStyleBasePalette() = default;
};

} // namespace zel::inline v1
