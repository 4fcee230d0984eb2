// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelGtkPortalAppearance.h>

#include "HiddenSessionBus.h"

#include <glib-unix.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace zel::inline v1 {

/// The event source. What it waits for is asked anew before each wait, since the portal has another
/// descriptor after each new connection. GLib owns its memory, and calls no constructor.
struct PortalSource {
    GSource base;
    ZelPortalAppearance* portal;
    gpointer descriptorTag; // none while there is no descriptor
    int descriptor;
    HiddenSessionBus* hiddenBus; // while the bus is silent; owned

    static PortalSource& of(GSource* source) noexcept {
        return *reinterpret_cast<PortalSource*>(source);
    }
    void showBus() noexcept {
        const std::unique_ptr<HiddenSessionBus> shown(std::exchange(hiddenBus, nullptr));
    }
};

namespace {

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
    if (source.hiddenBus && source.portal->busHasAnswered()) {
        source.showBus();
    }
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

GSourceFuncs portalFunctions{prepare, check, dispatch, nullptr, nullptr, nullptr};

} // namespace

ZelGtkPortalAppearance::ZelGtkPortalAppearance(GMainContext* context)
    : source_(&PortalSource::of(g_source_new(&portalFunctions, sizeof(PortalSource)))) {
    source_->portal = &portal_;
    source_->descriptorTag = nullptr;
    source_->descriptor = -1;
    source_->hiddenBus = nullptr;
    g_source_set_static_name(&source_->base, "ZelStyleKit desktop portal");
    g_source_attach(&source_->base, context);
}

ZelGtkPortalAppearance::~ZelGtkPortalAppearance() {
    source_->showBus();
    g_source_destroy(&source_->base);
    g_source_unref(&source_->base);
}

ZelPortalStatus ZelGtkPortalAppearance::start(ZelPortalOptions options,
                                              std::chrono::milliseconds firstAnswer) {
    const bool isSessionBus = options.busAddress.empty();
    source_->showBus(); // started afresh, perhaps
    portal_.start(std::move(options));
    const ZelPortalStatus status = portal_.waitForFirstAnswer(firstAnswer);
    if (isSessionBus && status == ZelPortalStatus::Connecting && !portal_.busHasAnswered()) {
        source_->hiddenBus = std::make_unique<HiddenSessionBus>().release();
    }
    return status;
}

} // namespace zel::inline v1
