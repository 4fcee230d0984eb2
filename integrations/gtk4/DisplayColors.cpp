// SPDX-License-Identifier: Apache-2.0
#include "DisplayColors.h"

#include "WidgetColors.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleDomain.h>

namespace zel::inline v1 {
namespace {

GQuark displayQuark() noexcept {
    static const GQuark quark = g_quark_from_static_string("zel-gtk-display-colors");
    return quark;
}

} // namespace

std::shared_ptr<DisplayColors> DisplayColors::of(GdkDisplay* display) {
    const void* const found =
        display ? g_object_get_qdata(G_OBJECT(display), displayQuark()) : nullptr;
    const auto* const colors = static_cast<const std::weak_ptr<DisplayColors>*>(found);
    return colors ? colors->lock() : nullptr;
}

void DisplayColors::start(GdkDisplay* display, unsigned priority) {
    display_ = GDK_DISPLAY(g_object_ref(display));
    priority_ = priority;
    const auto self = std::static_pointer_cast<DisplayColors>(shared_from_this());
    g_object_set_qdata_full(G_OBJECT(display), displayQuark(),
                            new std::weak_ptr<DisplayColors>(self), [](gpointer held) noexcept {
                                const std::unique_ptr<std::weak_ptr<DisplayColors>> last(
                                    static_cast<std::weak_ptr<DisplayColors>*>(held));
                            });
    gtk_style_context_add_provider_for_display(display, main_.provider(), priority);
    // The owner is no styleable: what it is told is the main style.
    ZelStyleDomain::defaultDomain()->registerChangeHandler(
        [](const auto& owner, const auto& style, auto /*event*/) {
            auto& colors = static_cast<DisplayColors&>(*owner);
            if (colors.isHere()) {
                colors.follow(style);
            }
        },
        self);
    watchWindows();
}

void DisplayColors::stop() {
    ZelStyleDomain::defaultDomain()->unregisterChangeHandlersWithOwner(shared_from_this());
    g_signal_handlers_disconnect_by_data(gtk_window_get_toplevels(), this);
    while (!watched_.empty()) {
        watched_.back()->stop();
    }
    gtk_style_context_remove_provider_for_display(display_, main_.provider());
    g_object_set_qdata(G_OBJECT(display_), displayQuark(), nullptr);
    g_clear_object(&display_);
}

bool DisplayColors::isHere() {
    const bool here = std::this_thread::get_id() == thread_;
    if (!here && !isLate_.exchange(true)) {
        NSMainQueue::mainQueue().async([weak = weak_from_this()] {
            const auto self = std::static_pointer_cast<DisplayColors>(weak.lock());
            if (self && self->isLate_.exchange(false) && self->display_) {
                self->refresh();
            }
        });
    }
    return here;
}

void DisplayColors::refresh() {
    follow(ZelStyleDomain::defaultDomain()->mainStyle());
}

// With another main style, widgets whose own style has not changed may need a sheet, or no more.
// The list may grow meanwhile.
void DisplayColors::follow(const std::shared_ptr<ZelStyle>& style) {
    loads_ += main_.show(style.get()) ? 1 : 0;
    std::size_t index = 0;
    while (index < watched_.size()) {
        watched_[index++]->refresh();
    }
}

std::shared_ptr<StyleSheet> DisplayColors::sheetFor(const std::shared_ptr<ZelStyle>& style) {
    if (!style || style->token() == main_.style()) {
        return nullptr;
    }
    auto& known = sheets_[style->token().serial()];
    auto sheet = known.lock();
    if (!sheet) {
        sheet = std::make_shared<StyleSheet>();
        known = sheet;
        std::erase_if(sheets_, [](const auto& each) { return each.second.expired(); });
    }
    loads_ += sheet->show(style.get()) ? 1 : 0;
    return sheet;
}

void DisplayColors::remember(WidgetColors& widget) {
    widget.index_ = watched_.size();
    watched_.push_back(&widget);
}

void DisplayColors::forget(const WidgetColors& widget) noexcept {
    watched_[widget.index_] = watched_.back();
    watched_[widget.index_]->index_ = widget.index_;
    watched_.pop_back();
}

// Windows come without being asked for: a dialog of a pinned window is to look like it. Those of
// another display concern its own colours, and a watch finds out which they are.
void DisplayColors::watchWindows() {
    GListModel* const windows = gtk_window_get_toplevels();
    g_signal_connect(windows, "items-changed", G_CALLBACK(windowsChanged), this);
    windowsChanged(windows, 0, 0, g_list_model_get_n_items(windows), this);
}

void DisplayColors::windowsChanged(GListModel* windows, guint position, guint /*removed*/,
                                   guint added, gpointer /*self*/) noexcept {
    for (guint index = position; index < position + added; ++index) {
        void* const window = g_list_model_get_item(windows, index);
        if (window) {
            watchCompanionsFrom(GTK_WIDGET(window));
            g_object_unref(window);
        }
    }
}

// Companions may have been made before the display was given colours. Where a widget has one, so
// have those above it.
void DisplayColors::watchCompanionsFrom(GtkWidget* widget) {
    const auto companion = ZelGtkStyleable::of(widget);
    if (!companion->colors_) {
        WidgetColors::watch(*companion);
    }
    for (GtkWidget* each = gtk_widget_get_first_child(widget); each;
         each = gtk_widget_get_next_sibling(each)) {
        if (ZelGtkStyleable::hasStyleable(each)) {
            watchCompanionsFrom(each);
        }
    }
}

} // namespace zel::inline v1
