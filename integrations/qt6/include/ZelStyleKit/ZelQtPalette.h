// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <QPalette>

#include <memory>

class QWidget;

namespace zel::inline v1 {

class ZelStyle;

/// Palettes made from styles, by one table of roles.
/// Owns: the palettes of the styles that were asked for last; copies share them.
/// Threads: the main thread; widgets that follow take a style updated on another over on the main
/// queue. Failure: an attribute that a style lacks leaves its role as Qt has it.
class ZEL_EXPORT ZelQtPalette final {
public:
    ZelQtPalette() = delete;

    /// The style's colours as a palette; the same one, not made anew, until the style's values
    /// change. No style: Qt's own palette.
    [[nodiscard]] static QPalette paletteWithStyle(const std::shared_ptr<ZelStyle>& style);

    /// Gives the widget, and so those inside it, the palette of the style that applies to it, now
    /// and whenever that changes, until the widget ends. For a part of a window that has a scheme
    /// or style of its own; everything else has the palette of `ZelQtApplicationPalette`.
    static void follow(QWidget& widget);
    /// Ends that; the widget inherits its palette again.
    static void unfollow(QWidget& widget);
};

} // namespace zel::inline v1
