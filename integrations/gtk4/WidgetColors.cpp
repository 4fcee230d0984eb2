// SPDX-License-Identifier: Apache-2.0
#include "WidgetColors.h"

#include "DisplayColors.h"

#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <utility>

namespace zel::inline v1 {

void WidgetColors::watch(ZelGtkStyleable& companion) {
    const auto display = DisplayColors::of(gtk_widget_get_display(companion.widget_));
    if (!display) {
        return;
    }
    const auto made = alloc<WidgetColors>();
    made->init();
    companion.colors_ = made; // what happens below may ask for it
    made->start(companion, display);
}

WidgetColors::~WidgetColors() {
    leaveChildren();
    leaveDisplay();
}

void WidgetColors::leaveDisplay() noexcept {
    if (const auto display = std::exchange(display_, {}).lock()) {
        display->forget(*this);
    }
}

void WidgetColors::start(ZelGtkStyleable& companion,
                         const std::shared_ptr<DisplayColors>& display) {
    companion_ = std::static_pointer_cast<ZelGtkStyleable>(companion.shared_from_this());
    display_ = display;
    node_.setParent(&companion.node_);
    display->remember(*this);
    ZelStyleDomain::defaultDomain()->registerChangeHandler(
        [](const auto& owner, const auto& style, auto /*event*/) {
            auto& self = static_cast<WidgetColors&>(*owner);
            const auto colors = self.display_.lock();
            if (colors && colors->isHere()) {
                self.show(style);
            }
        },
        shared_from_this());
}

void WidgetColors::stop() {
    const auto self = shared_from_this();
    ZelStyleDomain::defaultDomain()->unregisterChangeHandlersWithOwner(self);
    wear(nullptr);
    leaveDisplay();
    node_.leave();
    if (const auto companion = companion_.lock()) {
        companion->colors_.reset();
    }
}

std::optional<std::string> WidgetColors::domainIdentifierOfZelStyleable() const {
    return std::nullopt;
}

std::shared_ptr<NSObject> WidgetColors::parentZelStyleable() const {
    const auto companion = companion_.lock();
    return companion && companion->colors_.get() == this ? companion : nullptr;
}

void WidgetColors::refresh() {
    show(ZelStyleDomain::defaultDomain()->styleFor(shared_from_this()));
}

void WidgetColors::show(const std::shared_ptr<ZelStyle>& style) {
    const auto display = display_.lock();
    const auto companion = companion_.lock();
    if (!display || !companion || !companion->widget()) {
        return;
    }
    wear(display->sheetFor(style));
}

void WidgetColors::wear(const std::shared_ptr<StyleSheet>& sheet) {
    if (sheet == sheet_) {
        return;
    }
    const auto companion = companion_.lock();
    GtkWidget* const widget = companion ? companion->widget() : nullptr;
    if (!widget) {
        return;
    }
    GtkStyleContext* const context = gtk_widget_get_style_context(widget);
    const auto former = std::exchange(sheet_, sheet);
    if (const auto display = display_.lock(); sheet && display) {
        gtk_style_context_add_provider(context, sheet->provider(), display->sheetPriority());
    }
    if (former) {
        gtk_style_context_remove_provider(context, former->provider());
    }
    if (sheet) {
        watchChildren();
    } else {
        leaveChildren();
    }
}

// Every child gets a companion, and with it a watch of its own.
void WidgetColors::watchChildren() {
    const auto companion = companion_.lock();
    if (children_ || !companion) {
        return;
    }
    children_ = gtk_widget_observe_children(companion->widget());
    g_signal_connect(children_, "items-changed", G_CALLBACK(childrenChanged), this);
    childrenChanged(children_, 0, 0, g_list_model_get_n_items(children_), this);
}

void WidgetColors::leaveChildren() noexcept {
    if (GListModel* const children = std::exchange(children_, nullptr)) {
        g_signal_handlers_disconnect_by_data(children, this);
        g_object_unref(children);
    }
}

void WidgetColors::childrenChanged(GListModel* children, guint position, guint /*removed*/,
                                   guint added, gpointer /*self*/) noexcept {
    for (guint index = position; index < position + added; ++index) {
        void* const child = g_list_model_get_item(children, index);
        if (child) {
            ZelGtkStyleable::of(GTK_WIDGET(child));
            g_object_unref(child);
        }
    }
}

} // namespace zel::inline v1
