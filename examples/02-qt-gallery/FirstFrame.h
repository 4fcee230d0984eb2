// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GalleryOptions.h"

#include <QObject>

#include <chrono>

namespace gallery {

class GalleryWindow;

/// The time since it was made.
class Clock {
public:
    [[nodiscard]] long milliseconds() const {
        const auto passed = std::chrono::steady_clock::now() - made_;
        return static_cast<long>(
            std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
    }

private:
    const std::chrono::steady_clock::time_point made_ = std::chrono::steady_clock::now();
};

/// Waits for the first frame of a window, says on the standard output when it came and whether it
/// was dark, and takes the picture that the options ask for, of the pixels on the screen.
/// Refers to: the window, the options and the clock, which outlive it.
class FirstFrame : public QObject {
public:
    FirstFrame(GalleryWindow& window, const Options& options, const Clock& started);

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void painted();
    bool turn();
    void takePicture();

    GalleryWindow& window_;
    const Options& options_;
    const Clock& started_;
    bool isFirst_ = true;
    bool isPosted_ = false;
};

} // namespace gallery
