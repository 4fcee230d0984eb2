// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <glib.h>

namespace zel::inline v1 {

/// Runs the library's main queue on a GLib main context: what is put on the queue, by any thread,
/// runs in the context's next round, before anything is drawn. Has names compared by GLib, in the
/// locale that the C library is set to, as it is by `gtk_init` (`localizedCaseInsensitiveCompare`);
/// a host sets a comparison of its own later.
/// Owns: its event source; the main queue's wake hook and the host's comparison, which go when this
/// ends.
/// Refers to: the context (by reference count).
/// Threads: made and ended on the thread that runs the context, which is the main thread.
/// Failure: none of its own; a queued task's exception can't pass through GLib and ends the
/// process.
class ZEL_EXPORT ZelGtkMainQueue final {
public:
    /// None: the default context, the one that GTK runs on.
    explicit ZelGtkMainQueue(GMainContext* context = nullptr);
    ~ZelGtkMainQueue();
    ZelGtkMainQueue(const ZelGtkMainQueue&) = delete;
    ZelGtkMainQueue& operator=(const ZelGtkMainQueue&) = delete;

private:
    GSource* const source_;
};

} // namespace zel::inline v1
