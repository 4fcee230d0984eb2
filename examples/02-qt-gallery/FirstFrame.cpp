// SPDX-License-Identifier: Apache-2.0
#include "FirstFrame.h"

#include "GalleryWindow.h"
#include "Swatch.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QWindow>

#include <cstdio>
#include <memory>

namespace gallery {

FirstFrame::FirstFrame(GalleryWindow& window, const Options& options, const Clock& started)
    : window_(window), options_(options), started_(started) {
    window.installEventFilter(this);
}

// The frame is on the screen when the event that paints it has been handled: next of all, then,
// before anything else that waits.
bool FirstFrame::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Paint && !isPosted_) {
        isPosted_ = true;
        QCoreApplication::postEvent(this, std::make_unique<QEvent>(QEvent::User).release(),
                                    Qt::HighEventPriority);
    }
    return false;
}

bool FirstFrame::event(QEvent* event) {
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    isPosted_ = false;
    painted();
    return true;
}

void FirstFrame::painted() {
    if (isFirst_) {
        isFirst_ = false;
        std::printf("first frame after %ld ms: %s\n", started_.milliseconds(),
                    window_.isDark() ? "dark" : "light");
        std::fflush(stdout);
        if (!turn()) {
            std::fprintf(stderr, "There is no mode '%s'.\n", qPrintable(options_.choose));
            window_.removeEventFilter(this);
            QCoreApplication::exit(1);
            return;
        }
        if (!options_.choose.isEmpty()) {
            window_.update(); // what was chosen applies at once, and shows in the next frame
            return;
        }
    }
    if (!options_.screenshot.isEmpty() &&
        options_.then.value_or(window_.isDark()) == window_.isDark()) {
        takePicture();
    }
}

// By the user's hand, or as the desktop would; that turns by itself. False where it can't be done.
bool FirstFrame::turn() {
    if (!options_.choose.isEmpty()) {
        return window_.chooseMode(options_.choose);
    }
    if (options_.then && options_.source != Source::Portal) {
        zel::NSApplication::sharedApplication()->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed(*options_.then ? zel::NSAppearanceNameDarkAqua
                                                              : zel::NSAppearanceNameAqua));
    }
    return true;
}

void FirstFrame::takePicture() {
    window_.removeEventFilter(this);
    const QPixmap picture = window_.screen()->grabWindow(window_.winId());
    const double scale = window_.devicePixelRatioF();
    for (const Swatch* swatch : window_.swatches()) {
        const QPoint centre = swatch->mapTo(&window_, swatch->centre());
        std::printf("swatch %s %.0f %.0f\n", qPrintable(swatch->key()), centre.x() * scale,
                    centre.y() * scale);
    }
    const QPoint sidebar = window_.sidebarPoint();
    std::printf("sidebar %.0f %.0f\n", sidebar.x() * scale, sidebar.y() * scale);
    const QPoint tinted = window_.tintedPoint();
    std::printf("tinted %.0f %.0f\n", tinted.x() * scale, tinted.y() * scale);
    const bool saved = picture.save(options_.screenshot);
    if (!saved) {
        std::fprintf(stderr, "The picture can't be saved as %s.\n",
                     qPrintable(options_.screenshot));
    }
    QCoreApplication::exit(saved ? 0 : 1);
}

} // namespace gallery
