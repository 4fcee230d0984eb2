// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkMainQueue.h>

#include <ZelStyleKit/NSBundle.h>
#include <ZelStyleKit/NSMainQueue.h>

#include <memory>
#include <string_view>

namespace zel::inline v1 {
namespace {

// The source becomes ready by its time alone, which any thread may set.
constexpr gint64 now = 0;
constexpr gint64 never = -1;

gboolean dispatchQueue(GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) noexcept {
    g_source_set_ready_time(source, never); // before the tasks, which may queue others
    NSMainQueue::mainQueue().drain();
    return G_SOURCE_CONTINUE;
}

using Text = std::unique_ptr<gchar, decltype(&g_free)>;

Text foldCase(std::string_view text) {
    const Text valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
    return {g_utf8_casefold(valid.get(), -1), g_free};
}

int compareNames(std::string_view a, std::string_view b) {
    return g_utf8_collate(foldCase(a).get(), foldCase(b).get());
}

GSourceFuncs queueFunctions{nullptr, nullptr, dispatchQueue, nullptr, nullptr, nullptr};

} // namespace

ZelGtkMainQueue::ZelGtkMainQueue(GMainContext* context)
    : source_(g_source_new(&queueFunctions, sizeof(GSource))) {
    g_source_set_static_name(source_, "ZelStyleKit main queue");
    g_source_set_ready_time(source_, now); // tasks may be waiting already
    g_source_attach(source_, context);
    // The hook may be running on another thread when this ends: it has a reference of its own.
    const std::shared_ptr<GSource> source(g_source_ref(source_), g_source_unref);
    NSMainQueue::mainQueue().setWakeHook([source] {
        if (!g_source_is_destroyed(source.get())) {
            g_source_set_ready_time(source.get(), now);
        }
    });
    setLocalizedComparison(compareNames);
}

ZelGtkMainQueue::~ZelGtkMainQueue() {
    setLocalizedComparison(nullptr);
    NSMainQueue::mainQueue().setWakeHook(nullptr);
    g_source_destroy(source_);
    g_source_unref(source_);
}

} // namespace zel::inline v1
