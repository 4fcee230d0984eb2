// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkPortalAppearance.h>

#include <glib-unix.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace zel {
inline namespace v1 {
namespace {

/// The event source. What it waits for is asked anew before each wait, since the portal has another
/// descriptor after each new connection.
struct PortalSource {
    GSource base;
    ZelPortalAppearance* portal;
    gpointer descriptorTag; // none while there is no descriptor
    int descriptor;

    static PortalSource& of(GSource* source) noexcept {
        return *reinterpret_cast<PortalSource*>(source);
    }
};

// The bits of poll(2) and of GLib are the same ones on every system that has both.
GIOCondition conditionOf(short events) noexcept {
    return static_cast<GIOCondition>(static_cast<unsigned short>(events));
}

void watchDescriptor(PortalSource& source) noexcept {
    const int descriptor = source.portal->fileDescriptor();
    const GIOCondition condition = conditionOf(source.portal->events());
    if (source.descriptorTag && source.descriptor == descriptor) {
        g_source_modify_unix_fd(&source.base, source.descriptorTag, condition);
        return;
    }
    if (source.descriptorTag) {
        g_source_remove_unix_fd(&source.base, source.descriptorTag);
        source.descriptorTag = nullptr;
    }
    source.descriptor = descriptor;
    if (descriptor >= 0) {
        source.descriptorTag = g_source_add_unix_fd(&source.base, descriptor, condition);
    }
}

/// Milliseconds to wait at most, rounded up; -1 for as long as it takes.
gint timeoutOf(const PortalSource& source) noexcept {
    const auto timeout = source.portal->nextTimeout();
    if (!timeout) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*timeout).count();
    using Limits = std::numeric_limits<gint>;
    return static_cast<gint>(std::clamp<std::int64_t>(left, 0, Limits::max()));
}

gboolean prepare(GSource* base, gint* timeout) noexcept {
    PortalSource& source = PortalSource::of(base);
    watchDescriptor(source);
    *timeout = timeoutOf(source);
    return *timeout == 0;
}

gboolean check(GSource* base) noexcept {
    PortalSource& source = PortalSource::of(base);
    return (source.descriptorTag && g_source_query_unix_fd(base, source.descriptorTag) != 0) ||
           timeoutOf(source) == 0;
}

// The host's callback may end the portal, and with it this source.
gboolean dispatch(GSource* base, GSourceFunc /*callback*/, gpointer /*data*/) noexcept {
    PortalSource::of(base).portal->process();
    return G_SOURCE_CONTINUE;
}

GSourceFuncs functions{prepare, check, dispatch, nullptr, nullptr, nullptr};

} // namespace

ZelGtkPortalAppearance::ZelGtkPortalAppearance(GMainContext* context)
    : source_(g_source_new(&functions, sizeof(PortalSource))) {
    PortalSource& source = PortalSource::of(source_);
    source.portal = &portal_;
    source.descriptorTag = nullptr;
    source.descriptor = -1;
    g_source_set_static_name(source_, "ZelStyleKit desktop portal");
    g_source_attach(source_, context);
}

ZelGtkPortalAppearance::~ZelGtkPortalAppearance() {
    g_source_destroy(source_);
    g_source_unref(source_);
}

ZelPortalStatus ZelGtkPortalAppearance::start(ZelPortalOptions options,
                                              std::chrono::milliseconds firstAnswer) {
    portal_.start(std::move(options));
    return portal_.waitForFirstAnswer(firstAnswer);
}

} // namespace v1
} // namespace zel
