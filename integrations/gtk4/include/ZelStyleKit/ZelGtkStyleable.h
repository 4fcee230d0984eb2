// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelStyleable.h>
#include <ZelStyleKit/ZelStyleableNode.h>

#include <gtk/gtk.h>

#include <memory>
#include <optional>
#include <string>

namespace zel::inline v1 {

class DisplayColors;
class WidgetColors;

/// What makes a GTK widget styleable: its companion, made when it is first asked for. Its parent is
/// the companion of the widget's parent; that of a window is the one of the window that it is
/// transient for, unless that one belongs to it in turn: then it has none. A popover's parent is
/// its owner anyway.
/// Owns: nothing of the widget. Refers to: the widget, which owns the companion and whose end ends
/// it; its parent, weakly.
/// Threads: the main thread, as the widgets.
/// Moving a widget tells its subtree, once: when it has its new place. A widget that lost its place
/// is told on the main queue, if it has found no other by then and still lives; one that is being
/// destroyed is not told.
/// Failure: no widget has no companion. A handler's exception can't pass through GTK: in a change
/// that GTK reports, such as a move, it ends the process.
class ZEL_EXPORT ZelGtkStyleable final : public NSObject, public ZelStyleable {
public:
    /// The widget's companion, always the same; with it, those of the widgets above it are made.
    /// Whoever holds it on must not expect it to hear of anything after its widget's end.
    static std::shared_ptr<ZelGtkStyleable> of(GtkWidget* widget);
    /// Whether the widget has a companion already.
    [[nodiscard]] static bool hasStyleable(GtkWidget* widget) noexcept;

    /// Of no widget; `of` makes those that matter.
    ZelGtkStyleable();
    ~ZelGtkStyleable() override;

    /// The widget; none once it has ended.
    [[nodiscard]] GtkWidget* widget() const noexcept { return widget_; }

    [[nodiscard]] const ZelStyleable* asZelStyleable() const noexcept override { return this; }
    [[nodiscard]] const ZelStyleableNode* zelStyleableNode() const noexcept override {
        return &node_;
    }
    /// None: widgets belong to the default domain.
    [[nodiscard]] std::optional<std::string> domainIdentifierOfZelStyleable() const override;
    [[nodiscard]] std::shared_ptr<NSObject> parentZelStyleable() const override;

private:
    friend class DisplayColors;
    friend class WidgetColors;

    void attach(GtkWidget* widget);
    void detach();
    bool place();
    void placed();
    void tellLater();
    void tell();

    ZelStyleableNode node_{*this};
    GtkWidget* widget_ = nullptr;
    std::weak_ptr<ZelGtkStyleable> parent_;
    std::shared_ptr<WidgetColors> colors_; // where the widget's display is given named colours
    bool tellsLater_ = false;
};

} // namespace zel::inline v1
