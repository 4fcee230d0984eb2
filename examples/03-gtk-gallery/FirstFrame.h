// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GalleryOptions.h"

#include <gtk/gtk.h>

#include <chrono>

namespace gallery {

class GalleryWindow;

using Clock = std::chrono::steady_clock;

/// Waits for the first frame of a window, says on the standard output when it came and whether it
/// was dark, and takes the picture that the options ask for; ends the loop then.
/// Refers to: the window, the options and the loop, which outlive it.
class FirstFrame {
public:
    FirstFrame(GalleryWindow& window, const Options& options, GMainLoop* loop,
               Clock::time_point started);
    FirstFrame(const FirstFrame&) = delete;
    FirstFrame& operator=(const FirstFrame&) = delete;

    /// Once the window is shown.
    void await();
    /// Whether what the options ask for could not be done.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    void painted();
    bool turn();
    void stopWaiting();
    void takePicture();

    GalleryWindow& window_;
    const Options& options_;
    GMainLoop* const loop_;
    const Clock::time_point started_;
    gulong handler_ = 0;
    bool isFirst_ = true;
    bool failed_ = false;
};

} // namespace gallery
