// SPDX-License-Identifier: Apache-2.0
// GTK 4, as a toolkit: windows with a box in them, boxes, popovers, and windows that are transient
// for others.
#include "tests/contract/Toolkit.h"

#include <ZelStyleKit/ZelGtkMainQueue.h>
#include <ZelStyleKit/ZelGtkPortalAppearance.h>
#include <ZelStyleKit/ZelGtkStyleProvider.h>
#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

class GtkToolkit : public zeltest::Toolkit {
public:
    // With the named colours on: they listen as well, and must not get between.
    void connect() override {
        queue_.emplace();
        colors_.emplace();
    }
    void disconnect() override {
        GListModel* const windows = gtk_window_get_toplevels();
        while (gpointer window = g_list_model_get_item(windows, 0)) {
            gtk_window_destroy(GTK_WINDOW(window));
            g_object_unref(window);
        }
        portal_.reset();
        colors_.reset();
        queue_.reset();
    }

    Widget makeWindow() override {
        GtkWidget* const window = gtk_window_new();
        gtk_window_set_child(GTK_WINDOW(window), makeBox());
        return window;
    }
    Widget makeChild(Widget parent) override {
        GtkWidget* const child = makeBox();
        gtk_box_append(boxIn(parent), child);
        return child;
    }
    Widget makePopup(Widget owner) override {
        GtkWidget* const popover = gtk_popover_new();
        gtk_popover_set_child(GTK_POPOVER(popover), makeBox());
        gtk_widget_set_parent(popover, GTK_WIDGET(owner));
        return popover;
    }
    Widget makeDialog(Widget ownerWindow) override {
        GtkWidget* const dialog = GTK_WIDGET(makeWindow());
        gtk_window_set_transient_for(GTK_WINDOW(dialog), GTK_WINDOW(ownerWindow));
        gtk_window_set_destroy_with_parent(GTK_WINDOW(dialog), TRUE);
        return dialog;
    }

    void move(Widget child, Widget newParent) override {
        GtkWidget* const widget = GTK_WIDGET(child);
        g_object_ref(widget);
        gtk_box_remove(GTK_BOX(gtk_widget_get_parent(widget)), widget);
        gtk_box_append(boxIn(newParent), widget);
        g_object_unref(widget);
    }
    void destroy(Widget widget) override {
        if (GTK_IS_WINDOW(widget)) {
            gtk_window_destroy(GTK_WINDOW(widget));
        } else if (GTK_IS_POPOVER(widget)) {
            gtk_widget_unparent(GTK_WIDGET(widget));
        } else {
            GtkWidget* const child = GTK_WIDGET(widget);
            gtk_box_remove(GTK_BOX(gtk_widget_get_parent(child)), child);
        }
    }
    std::shared_ptr<zel::NSObject> styleableOf(Widget widget) override {
        return zel::ZelGtkStyleable::of(GTK_WIDGET(widget));
    }

    void run(std::chrono::milliseconds atMost) override {
        if (atMost.count() == 0) {
            g_main_context_iteration(nullptr, FALSE);
            return;
        }
        bool isLate = false;
        const guint timer =
            g_timeout_add(static_cast<guint>(atMost.count()), &GtkToolkit::becomeLate, &isLate);
        g_main_context_iteration(nullptr, TRUE);
        if (!isLate) {
            g_source_remove(timer);
        }
    }

    // GTK keeps no settings of its applications' own: they are the library's file.
    void keepDefaultsAsApplicationsDo() override {
        zel::NSUserDefaults::standardUserDefaults().setStore(nullptr);
    }
    void followDesktop() override {
        portal_.emplace();
        portal_->start({}, std::chrono::seconds(20));
    }

private:
    static gboolean becomeLate(gpointer isLate) {
        *static_cast<bool*>(isLate) = true;
        return G_SOURCE_REMOVE;
    }
    static GtkWidget* makeBox() { return gtk_box_new(GTK_ORIENTATION_VERTICAL, 0); }
    /// Where a widget's children go.
    static GtkBox* boxIn(Widget parent) {
        if (GTK_IS_WINDOW(parent)) {
            return GTK_BOX(gtk_window_get_child(GTK_WINDOW(parent)));
        }
        if (GTK_IS_POPOVER(parent)) {
            return GTK_BOX(gtk_popover_get_child(GTK_POPOVER(parent)));
        }
        return GTK_BOX(parent);
    }

    std::optional<zel::ZelGtkMainQueue> queue_;
    std::optional<zel::ZelGtkStyleProvider> colors_;
    std::optional<zel::ZelGtkPortalAppearance> portal_;
};

} // namespace

std::unique_ptr<zeltest::Toolkit> zeltest::makeToolkit(int& /*argc*/, char** /*argv*/) {
    if (!gtk_init_check()) {
        std::fputs("GTK finds no display\n", stderr);
        std::exit(1);
    }
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    return std::make_unique<GtkToolkit>();
}
