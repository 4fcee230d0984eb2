// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <memory>

namespace zel::inline v1 {

class StyleListener;

/// Gives the application the palette of its main style, now and whenever that changes, as long as
/// it lives. Windows to which another style applies, such as a dialog, menu or tooltip of a widget
/// that is pinned to a scheme, get the palette of that one before they are first painted. A popup
/// without a parent counts as the focused widget's, unless `ZelQtStyleable::setOwner` says whose it
/// is. Made after `ZelStyleManager::setup`.
/// Owns: nothing but its listening. Refers to: the QApplication, which outlives it.
/// Threads: the main thread; a style updated on another is taken over on the main queue. Failure:
/// none; a palette that the application itself gives to a window stays where the main style applies
/// to that window.
class ZEL_EXPORT ZelQtApplicationPalette final {
public:
    ZelQtApplicationPalette();
    /// The application has Qt's own palette again.
    ~ZelQtApplicationPalette();
    ZelQtApplicationPalette(const ZelQtApplicationPalette&) = delete;
    ZelQtApplicationPalette& operator=(const ZelQtApplicationPalette&) = delete;

private:
    class Windows;
    const std::unique_ptr<Windows> windows_;
    const std::shared_ptr<StyleListener> listener_;
};

} // namespace zel::inline v1
