// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StyleSheet.h"

#include <ZelStyleKit/NSObject.h>

#include <gtk/gtk.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace zel::inline v1 {

class WidgetColors;

/// The named colours that a display is given: those of the main style for every widget, and for
/// each other style that applies somewhere a sheet that its widgets are given.
/// Owns: the main style's sheet. Refers to: the display; the other sheets, which the widgets that
/// wear them own; who watches a widget.
/// Threads: the main thread; told of a change on another one, it takes it over on the main queue.
/// Failure: none.
class DisplayColors final : public NSObject {
public:
    /// The colours that a display is given at present; none where it isn't.
    static std::shared_ptr<DisplayColors> of(GdkDisplay* display);
    /// What a widget's own sheet has to have, to come before the display's.
    [[nodiscard]] unsigned sheetPriority() const noexcept { return priority_ + 1; }

    void start(GdkDisplay* display, unsigned priority);
    void stop();

    /// The sheet of a style; none for no style and for the main style, whose the display has.
    std::shared_ptr<StyleSheet> sheetFor(const std::shared_ptr<ZelStyle>& style);

    /// Whether this is the main thread; where not, everything is brought up to date there, soon,
    /// once for however many questions.
    bool isHere();

    void remember(WidgetColors& widget);
    void forget(const WidgetColors& widget) noexcept;

    [[nodiscard]] std::uint64_t loads() const noexcept { return loads_; }

private:
    void refresh();
    void follow(const std::shared_ptr<ZelStyle>& style);
    void watchWindows();
    static void watchCompanionsFrom(GtkWidget* widget);
    static void windowsChanged(GListModel* windows, guint position, guint removed, guint added,
                               gpointer self) noexcept;

    const std::thread::id thread_ = std::this_thread::get_id();
    std::atomic<bool> isLate_ = false; // something changed that is still to be taken over
    GdkDisplay* display_ = nullptr;
    unsigned priority_ = 0;
    StyleSheet main_;
    std::map<std::uint64_t, std::weak_ptr<StyleSheet>> sheets_; // by the style's serial
    std::vector<WidgetColors*> watched_;
    std::uint64_t loads_ = 0; // how often GTK was given colours
};

} // namespace zel::inline v1
