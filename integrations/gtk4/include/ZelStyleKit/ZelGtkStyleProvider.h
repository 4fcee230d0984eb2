// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <gtk/gtk.h>

#include <cstdint>
#include <memory>

namespace zel::inline v1 {

class DisplayColors;

/// Gives the styles' colours to GTK's style sheets as named colours: a style sheet of the
/// application's says `background: @zel_backgroundColor;` once, and each widget gets the colour of
/// the style that applies to it. Every attribute that holds a colour has a name, "zel_" and its
/// key; characters of a key that no CSS identifier has are escaped.
///
/// How it is scoped: GTK looks a named colour up in the sheets of the widget that a rule is used
/// for. The main style's colours are given to the display, for all. A widget that another style
/// applies to, by an identifier on it or above it, is given a sheet of that style's, and so is each
/// widget below it, those that are added later and popovers included; windows that are transient
/// for one of its windows likewise. They lose it when they move elsewhere.
///
/// How it is kept up to date: a style has one sheet, however many widgets wear it. It is written
/// anew when the style's values have changed, never for a switch between styles; of the display's,
/// a switch is such a change. GTK computes no style anew where the colours are the same.
///
/// It defines no other names and adds no rule, so that it goes with any theme; what libadwaita's
/// style manager does with its own colours is left alone.
/// Owns: the sheets. Refers to: the display (by reference count).
/// Threads: made and ended on the main thread. A change on another thread is taken over later, on
/// the main queue.
/// Failure: one for each display; a further one does nothing.
class ZEL_EXPORT ZelGtkStyleProvider final {
public:
    /// None: the default display. The named colours have the priority, and for widgets with a sheet
    /// of their own, the next higher one.
    explicit ZelGtkStyleProvider(GdkDisplay* display = nullptr,
                                 unsigned priority = GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    /// Takes the colours away.
    ~ZelGtkStyleProvider();
    ZelGtkStyleProvider(const ZelGtkStyleProvider&) = delete;
    ZelGtkStyleProvider& operator=(const ZelGtkStyleProvider&) = delete;

    /// How often GTK was given colours so far: for a statistic, or to see that nothing is done in
    /// vain.
    [[nodiscard]] std::uint64_t loadCount() const noexcept;

private:
    std::shared_ptr<DisplayColors> colors_; // none where the display had some already
};

} // namespace zel::inline v1
