// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkStyleable.h>

#include "WidgetColors.h"

#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <utility>

namespace zel::inline v1 {
namespace {

using Companion = std::shared_ptr<ZelGtkStyleable>;

GQuark companionQuark() noexcept {
    static const GQuark quark = g_quark_from_static_string("zel-gtk-styleable");
    return quark;
}

/// Who passes its style on to a widget. A window that is to be put inside another is a child.
GtkWidget* ownerOf(GtkWidget* widget) noexcept {
    GtkWidget* const parent = gtk_widget_get_parent(widget);
    if (parent || !GTK_IS_WINDOW(widget)) {
        return parent;
    }
    GtkWindow* const owner = gtk_window_get_transient_for(GTK_WINDOW(widget));
    return owner ? GTK_WIDGET(owner) : nullptr;
}

} // namespace

ZelGtkStyleable::ZelGtkStyleable() = default;

ZelGtkStyleable::~ZelGtkStyleable() = default;

Companion ZelGtkStyleable::of(GtkWidget* widget) {
    if (!widget) {
        return nullptr;
    }
    if (const void* found = g_object_get_qdata(G_OBJECT(widget), companionQuark())) {
        return *static_cast<const Companion*>(found);
    }
    auto made = alloc<ZelGtkStyleable>();
    made->init();
    made->attach(widget);
    return made;
}

bool ZelGtkStyleable::hasStyleable(GtkWidget* widget) noexcept {
    return widget && g_object_get_qdata(G_OBJECT(widget), companionQuark());
}

std::optional<std::string> ZelGtkStyleable::domainIdentifierOfZelStyleable() const {
    return std::nullopt;
}

// One that has lost its widget has left the tree, whoever still holds it.
std::shared_ptr<NSObject> ZelGtkStyleable::parentZelStyleable() const {
    const auto parent = parent_.lock();
    return parent && parent->widget_ ? parent : nullptr;
}

void ZelGtkStyleable::attach(GtkWidget* widget) {
    widget_ = widget;
    const auto self = std::static_pointer_cast<ZelGtkStyleable>(shared_from_this());
    // GTK drops this with the widget's memory, after everything that runs at its destruction.
    g_object_set_qdata_full(
        G_OBJECT(widget), companionQuark(), new Companion(self), [](gpointer held) noexcept {
            const std::unique_ptr<Companion> last(static_cast<Companion*>(held));
            (*last)->detach();
        });
    // They go with the widget, before its companion does.
    const auto moved = +[](ZelGtkStyleable* companion) noexcept { companion->placed(); };
    g_signal_connect_swapped(widget, "notify::parent", G_CALLBACK(moved), this);
    if (GTK_IS_WINDOW(widget)) {
        g_signal_connect_swapped(widget, "notify::transient-for", G_CALLBACK(moved), this);
    }
    place();
    WidgetColors::watch(*this);
}

void ZelGtkStyleable::detach() {
    widget_ = nullptr;
    colors_.reset();
    node_.leave();
    // Who is walking over listeners may hold this a little longer, and must call it no more.
    const auto self = shared_from_this();
    if (self.use_count() > 2) {
        unregisterStyleableChangeHandlers();
        ZelStyleDomain::defaultDomain()->unregisterChangeHandler(self);
    }
}

/// Takes the place in the tree that the widget has; false where it is the one it had.
bool ZelGtkStyleable::place() {
    static const auto ownerGone = +[](GtkWidget* widget) noexcept { of(widget)->placed(); };
    GtkWidget* owner = ownerOf(widget_);
    auto parent = of(owner);
    if (parent && ZelStyleDomain::isEqualOrChildOf(parent, shared_from_this())) {
        owner = nullptr; // windows that are transient for each other: GTK lets them
        parent = nullptr;
    }
    const auto former = parent_.lock();
    if (parent == former) {
        return false;
    }
    // A window tells nobody when it loses its owner by the owner's end.
    if (former && former->widget_ && GTK_IS_WINDOW(widget_)) {
        g_signal_handlers_disconnect_by_func(former->widget_, reinterpret_cast<gpointer>(ownerGone),
                                             widget_);
    }
    if (owner && GTK_IS_WINDOW(widget_)) {
        g_signal_connect_object(owner, "destroy", G_CALLBACK(ownerGone), widget_,
                                G_CONNECT_SWAPPED);
    }
    parent_ = parent;
    node_.setParent(parent ? &parent->node_ : nullptr);
    return true;
}

void ZelGtkStyleable::placed() {
    if (!place()) {
        return;
    }
    if (!colors_) {
        WidgetColors::watch(*this);
    }
    if (parent_.expired()) {
        tellLater();
    } else {
        tell();
    }
}

// A widget that is moved has no parent in between, and one that is destroyed loses it as well.
void ZelGtkStyleable::tellLater() {
    if (std::exchange(tellsLater_, true)) {
        return;
    }
    NSMainQueue::mainQueue().async([weak = weak_from_this()] {
        const auto self = std::static_pointer_cast<ZelGtkStyleable>(weak.lock());
        if (self && std::exchange(self->tellsLater_, false) && self->widget_) {
            self->tell();
        }
    });
}

void ZelGtkStyleable::tell() {
    tellsLater_ = false;
    ZelStyleDomain::defaultDomain()->notifyForStyleChangeOf(shared_from_this(), {});
}

} // namespace zel::inline v1
