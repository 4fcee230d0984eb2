// SPDX-License-Identifier: Apache-2.0
#include "support/Program.h"
#include "support/TreeShape.h"

#include <gtk/gtk.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <vector>

namespace zel::inline v1 {

namespace {

std::size_t calls = 0; // of the class's handler, which has no place for a reference

constexpr std::array<const char*, 2> sheets{
    "@define-color accent rgb(20,20,20); listener { color: @accent; }",
    "@define-color accent rgb(220,220,220); listener { color: @accent; }"};

GtkWidgetClass* parentClass = nullptr;

void cssChanged(GtkWidget* widget, GtkCssStyleChange* change) {
    ++calls;
    parentClass->css_changed(widget, change);
}

void dispose(GObject* object) {
    while (GtkWidget* child = gtk_widget_get_first_child(GTK_WIDGET(object))) {
        gtk_widget_unparent(child);
    }
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void initialiseClass(void* type, void*) {
    parentClass = GTK_WIDGET_CLASS(g_type_class_peek_parent(type));
    GTK_WIDGET_CLASS(type)->css_changed = cssChanged;
    G_OBJECT_CLASS(type)->dispose = dispose;
    gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(type), "listener");
}

GtkWidget* newListener() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "BenchmarkListener", sizeof(GtkWidgetClass),
                                      initialiseClass, sizeof(GtkWidget), nullptr, GTypeFlags{});
    return GTK_WIDGET(g_object_new(type, nullptr));
}

/// A style sheet for everything on the display, as long as this lives.
class Sheet {
public:
    Sheet() {
        gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                                   GTK_STYLE_PROVIDER(provider_),
                                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    }
    ~Sheet() {
        gtk_style_context_remove_provider_for_display(gdk_display_get_default(),
                                                      GTK_STYLE_PROVIDER(provider_));
        g_object_unref(provider_);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    void load(std::size_t number) {
        gtk_css_provider_load_from_data(provider_, sheets[number], -1);
    }

private:
    GtkCssProvider* provider_ = gtk_css_provider_new();
};

/// A shown window with a tree of widgets; without a shown window no style is ever looked at.
class Window {
public:
    explicit Window(std::size_t size) {
        std::vector<GtkWidget*> nodes{newListener()};
        for (const std::size_t parent : parentsOfTree(size)) {
            nodes.push_back(newListener());
            gtk_widget_set_parent(nodes.back(), nodes[parent]);
        }
        root_ = nodes.front();
        gtk_window_set_child(GTK_WINDOW(window_), root_);
        gtk_window_present(GTK_WINDOW(window_));
    }
    ~Window() { gtk_window_destroy(GTK_WINDOW(window_)); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    [[nodiscard]] GtkWidget* root() const noexcept { return root_; }

private:
    GtkWidget* window_ = gtk_window_new();
    GtkWidget* root_ = nullptr;
};

// Runs the event loop until the handler was called that often; false after ten seconds.
bool runUntil(std::size_t expected) {
    const gint64 end = g_get_monotonic_time() + 10 * G_USEC_PER_SEC;
    while (calls < expected && g_get_monotonic_time() < end) {
        g_main_context_iteration(nullptr, FALSE);
    }
    return calls >= expected;
}

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// A reload takes effect in the next frame. Waiting for it is not counted: the time is that of the
// reload and of the one pass of the event loop in which the listeners are called, which draws too.
void switchProvider(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(state.range(0));
    Sheet sheet;
    sheet.load(0);
    calls = 0;
    const Window window(size);
    bool all = runUntil(size + 1);
    std::size_t next = 1;
    for (auto _ : state) {
        calls = 0;
        double start = threadSeconds();
        sheet.load(next);
        double spent = threadSeconds() - start;
        next = 1 - next;
        const gint64 end = g_get_monotonic_time() + 10 * G_USEC_PER_SEC;
        while (calls <= size && g_get_monotonic_time() < end) {
            start = threadSeconds();
            const std::size_t before = calls;
            g_main_context_iteration(nullptr, FALSE);
            if (calls != before) {
                spent += threadSeconds() - start;
            }
        }
        state.SetIterationTime(spent);
        all = all && calls >= size + 1;
        if (!all) {
            state.SkipWithError("a widget was not told");
            return;
        }
    }
}

void lookUp(benchmark::State& state) {
    Sheet sheet;
    sheet.load(0);
    calls = 0;
    const Window window(10);
    runUntil(11);
    GtkStyleContext* context = gtk_widget_get_style_context(window.root());
    GdkRGBA color{};
    if (!gtk_style_context_lookup_color(context, "accent", &color)) {
        state.SkipWithError("no such colour");
        return;
    }
    for (auto _ : state) {
        gtk_style_context_lookup_color(context, "accent", &color);
        benchmark::DoNotOptimize(color);
    }
}

BENCHMARK(lookUp)->Name("read_own/gtk4")->UseRealTime();
BENCHMARK(switchProvider)
    ->Name("switch/gtk4")
    ->RangeMultiplier(10)
    ->Range(1000, 10'000)
    ->UseManualTime()
    ->Iterations(3);

} // namespace

} // namespace zel::inline v1

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    if (!gtk_init_check()) {
        std::fputs("peer_gtk4: no display\n", stderr);
        return 77;
    }
    return zel::runBenchmarks(argc, argv);
}
