// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelGtkMainQueue.h>
#include <ZelStyleKit/ZelGtkStyleProvider.h>
#include <ZelStyleKit/ZelGtkStyleable.h>

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace zeltest {

/// Red, green and blue, 0 to 255, and alpha, 0 to 100.
struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 100;

    friend bool operator==(const Rgb&, const Rgb&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Rgb& color) {
        return out << color.red << ' ' << color.green << ' ' << color.blue << " / " << color.alpha;
    }
    [[nodiscard]] zel::NSColor color() const {
        return zel::NSColor::colorWithSRGBRed(red / 255.0, green / 255.0, blue / 255.0,
                                              alpha / 100.0);
    }
};

/// GTK on the library, in a process of its own: a fresh library with light and dark main styles and
/// a style "sidebar" in each. Everything that GTK warns of ends the test. The background of each
/// style says which one it is.
class GtkTests : public StylingTests {
protected:
    static constexpr Rgb lightColor{250, 251, 252};
    static constexpr Rgb darkColor{10, 11, 12};
    static constexpr Rgb lightSidebarColor{200, 201, 202};
    static constexpr Rgb darkSidebarColor{50, 51, 52};

    static void SetUpTestSuite() {
        ASSERT_TRUE(gtk_init_check()) << "no display";
        g_log_set_always_fatal(
            static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    }
    void SetUp() override {
        domain->setSchemeFollowsSystem(true);
        light->setBackgroundColor(lightColor.color());
        dark->setBackgroundColor(darkColor.color());
        lightSidebar->setBackgroundColor(lightSidebarColor.color());
        darkSidebar->setBackgroundColor(darkSidebarColor.color());
    }
    void TearDown() override {
        GListModel* const windows = gtk_window_get_toplevels();
        while (gpointer window = g_list_model_get_item(windows, 0)) {
            gtk_window_destroy(GTK_WINDOW(window));
            g_object_unref(window);
        }
    }

    static std::shared_ptr<zel::ZelGtkStyleable> styleableOf(GtkWidget* widget) {
        return zel::ZelGtkStyleable::of(widget);
    }
    static GtkWidget* makeBox() { return gtk_box_new(GTK_ORIENTATION_VERTICAL, 0); }
    /// A window, with a box in it.
    static GtkWidget* makeWindow() {
        GtkWidget* const window = gtk_window_new();
        gtk_window_set_child(GTK_WINDOW(window), makeBox());
        return window;
    }
    static GtkWidget* boxIn(GtkWidget* window) { return gtk_window_get_child(GTK_WINDOW(window)); }
    static GtkWidget* addLabel(GtkWidget* box) {
        GtkWidget* const label = gtk_label_new("label");
        gtk_box_append(GTK_BOX(box), label);
        return label;
    }
    static void pin(GtkWidget* widget, std::string_view scheme) {
        styleableOf(widget)->setCustomZelStyleSchemeIdentifier(scheme);
    }

    /// What a named colour is for a widget; black and transparent where there is none.
    static Rgb named(GtkWidget* widget, const char* name) {
        GdkRGBA color{};
        G_GNUC_BEGIN_IGNORE_DEPRECATIONS
        gtk_style_context_lookup_color(gtk_widget_get_style_context(widget), name, &color);
        G_GNUC_END_IGNORE_DEPRECATIONS
        return {
            static_cast<int>(color.red * 255 + 0.5F), static_cast<int>(color.green * 255 + 0.5F),
            static_cast<int>(color.blue * 255 + 0.5F), static_cast<int>(color.alpha * 100 + 0.5F)};
    }
    static Rgb background(GtkWidget* widget) { return named(widget, "zel_backgroundColor"); }

    /// Runs the main loop until the condition holds; false where it doesn't after 20 s.
    static bool runUntil(const std::function<bool()>& condition) {
        bool isLate = false;
        const guint timer = g_timeout_add(
            20000,
            [](gpointer late) -> gboolean {
                *static_cast<bool*>(late) = true;
                return G_SOURCE_REMOVE;
            },
            &isLate);
        while (!condition() && !isLate) {
            g_main_context_iteration(nullptr, TRUE);
        }
        if (!isLate) {
            g_source_remove(timer);
        }
        return !isLate;
    }

    Recorder recorder;
    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> lightSidebar = addChildStyle(light, "sidebar");
    const std::shared_ptr<zel::ZelStyle> darkSidebar = addChildStyle(dark, "sidebar");
};

} // namespace zeltest
