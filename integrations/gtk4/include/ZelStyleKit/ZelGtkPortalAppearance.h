// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/ZelPortalAppearance.h>

#include <glib.h>

#include <chrono>

namespace zel::inline v1 {

struct PortalSource;

/// Follows the desktop portal on a GLib main context: the portal's descriptor and timer are an
/// event source there, no thread is started, and nothing waits but the start, for so long at most.
/// Owns: the portal's side of it, and its event source. Refers to: the context (by reference
/// count).
/// Threads: the thread that runs the context, which is the main thread.
/// Failure: that of `ZelPortalAppearance`; the host's exceptions can't pass through GLib and end
/// the process, other than those out of `start`.
class ZEL_EXPORT ZelGtkPortalAppearance final {
public:
    /// None: the default context, the one that GTK runs on.
    explicit ZelGtkPortalAppearance(GMainContext* context = nullptr);
    /// Stops. Usable inside the portal's own callback once `start` has returned.
    ~ZelGtkPortalAppearance();
    ZelGtkPortalAppearance(const ZelGtkPortalAppearance&) = delete;
    ZelGtkPortalAppearance& operator=(const ZelGtkPortalAppearance&) = delete;

    /// Begins to follow, and waits for the first answer, no longer than `firstAnswer`, so that the
    /// first frame is drawn in the desktop's colours; 0 doesn't wait. An answer that comes later
    /// counts as well. Before `ZelStyleManager::setup`, and before `gtk_init`, which would wait
    /// without end for a session bus that is there and silent. Where the bus has let nobody in
    /// after the wait, GTK is kept from it, by the environment, until it does.
    ZelPortalStatus start(ZelPortalOptions options = {},
                          std::chrono::milliseconds firstAnswer = std::chrono::milliseconds{100});

    /// The portal, to ask for its status, to refresh or to stop it; `process` is called by itself.
    [[nodiscard]] ZelPortalAppearance& portal() noexcept { return portal_; }

private:
    ZelPortalAppearance portal_;
    PortalSource* const source_;
};

} // namespace zel::inline v1
