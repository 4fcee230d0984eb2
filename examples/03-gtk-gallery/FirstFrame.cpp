// SPDX-License-Identifier: Apache-2.0
#include "FirstFrame.h"

#include "Card.h"
#include "GalleryWindow.h"
#include "Swatch.h"

#include <ZelStyleKit/NSApplication.h>

#include <cstdio>
#include <optional>

namespace gallery {
namespace {

void makeSystem(bool dark) {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(dark ? zel::NSAppearanceNameDarkAqua
                                                : zel::NSAppearanceNameAqua));
}

/// The point of a widget whose pixel shows its colour: the middle of a swatch, and of what has
/// something in its middle, the edge. None for what shows nothing of the kind.
std::optional<graphene_point_t> placeOf(GtkWidget* widget, GtkWidget* window) {
    const bool isSwatch = gtk_widget_has_css_class(widget, swatchFillClass) != FALSE;
    const bool isSurface = gtk_widget_has_css_class(widget, surfaceClass) != FALSE;
    graphene_rect_t bounds;
    if (!(isSwatch || isSurface) || !gtk_widget_compute_bounds(widget, window, &bounds)) {
        return std::nullopt;
    }
    const float x = isSwatch ? bounds.size.width / 2 : 6;
    return graphene_point_t{bounds.origin.x + x, bounds.origin.y + bounds.size.height / 2};
}

/// Says at which pixel each swatch, the sidebar and the derived style's card show their colours.
void sayPlaces(GtkWidget* widget, GtkWidget* window) {
    if (const auto place = placeOf(widget, window)) {
        const auto scale = static_cast<float>(gtk_widget_get_scale_factor(window));
        std::printf("%s %d %d\n", gtk_widget_get_name(widget), static_cast<int>(place->x * scale),
                    static_cast<int>(place->y * scale));
    }
    for (GtkWidget* each = gtk_widget_get_first_child(widget); each;
         each = gtk_widget_get_next_sibling(each)) {
        sayPlaces(each, window);
    }
}

} // namespace

FirstFrame::FirstFrame(GalleryWindow& window, const Options& options, GMainLoop* loop,
                       Clock::time_point started)
    : window_(window), options_(options), loop_(loop), started_(started) {}

void FirstFrame::await() {
    const auto painted = +[](FirstFrame* frame) noexcept { frame->painted(); };
    handler_ = g_signal_connect_swapped(gtk_widget_get_frame_clock(window_.widget()), "after-paint",
                                        G_CALLBACK(painted), this);
}

void FirstFrame::painted() {
    if (isFirst_) {
        isFirst_ = false;
        const auto passed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started_);
        std::printf("first frame after %ld ms: %s\n", static_cast<long>(passed.count()),
                    window_.isDark() ? "dark" : "light");
        std::fflush(stdout);
        if (!turn()) {
            std::fprintf(stderr, "There is no mode '%s'.\n", options_.choose.c_str());
            failed_ = true;
            stopWaiting();
            g_main_loop_quit(loop_);
            return;
        }
        if (!options_.choose.empty()) {
            // What was chosen applies at once, and shows in the next frame.
            gtk_widget_queue_draw(window_.widget());
            return;
        }
    }
    if (options_.then && window_.isDark() != *options_.then) {
        return;
    }
    stopWaiting();
    if (!options_.screenshot.empty()) {
        takePicture();
        g_main_loop_quit(loop_);
    }
}

// By the user's hand, or as the desktop would; that turns by itself. False where it can't be done.
bool FirstFrame::turn() {
    if (!options_.choose.empty()) {
        return window_.chooseMode(options_.choose);
    }
    if (options_.then && options_.source != Source::Portal) {
        makeSystem(*options_.then);
    }
    return true;
}

void FirstFrame::stopWaiting() {
    g_signal_handler_disconnect(gtk_widget_get_frame_clock(window_.widget()), handler_);
}

// With as many pixels for each point as the screen has.
void FirstFrame::takePicture() {
    GtkWidget* const window = window_.widget();
    GdkPaintable* const paintable = gtk_widget_paintable_new(window);
    const auto width = static_cast<float>(gtk_widget_get_width(window));
    const auto height = static_cast<float>(gtk_widget_get_height(window));
    const auto scale = static_cast<float>(gtk_widget_get_scale_factor(window));
    GtkSnapshot* const snapshot = gtk_snapshot_new();
    gtk_snapshot_scale(snapshot, scale, scale);
    gdk_paintable_snapshot(paintable, snapshot, double{width}, double{height});
    GskRenderNode* const node = gtk_snapshot_free_to_node(snapshot);
    graphene_rect_t all;
    graphene_rect_init(&all, 0, 0, width * scale, height * scale);
    GdkTexture* const picture =
        gsk_renderer_render_texture(gtk_native_get_renderer(GTK_NATIVE(window)), node, &all);
    if (!gdk_texture_save_to_png(picture, options_.screenshot.c_str())) {
        std::fprintf(stderr, "%s can't be written\n", options_.screenshot.c_str());
        failed_ = true;
    }
    sayPlaces(window, window);
    std::fflush(stdout);
    g_object_unref(picture);
    gsk_render_node_unref(node);
    g_object_unref(paintable);
}

} // namespace gallery
