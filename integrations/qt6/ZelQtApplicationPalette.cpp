// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtApplicationPalette.h>

#include "QtWidgetLink.h"

#include <ZelStyleKit/ZelQtPalette.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <QApplication>
#include <QEvent>

namespace zel {
inline namespace v1 {
namespace {

/// A window has a palette of its own only where its style is not the application's, and gives up
/// none but what it was given here.
ZelStyleChangeHandler windowHandler(QWidget& window) {
    return [&window, given = false](const auto&, const std::shared_ptr<ZelStyle>& style,
                                    auto) mutable {
        if (style != ZelStyleDomain::defaultDomain()->mainStyle()) {
            window.setPalette(ZelQtPalette::paletteWithStyle(style));
            given = true;
        } else if (std::exchange(given, false)) {
            window.setPalette(QPalette());
        }
    };
}

} // namespace

/// Sees each window before it is first shown.
class ZelQtApplicationPalette::WindowFilter final : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Polish && watched->isWidgetType()) {
            auto& widget = *static_cast<QWidget*>(watched);
            if (widget.isWindow()) {
                QtWidgetLink& link = QtWidgetLink::of(widget);
                if (!link.hasPaletteHandler()) {
                    link.setPaletteHandler(windowHandler(widget));
                }
            }
        }
        return false;
    }
};

ZelQtApplicationPalette::ZelQtApplicationPalette()
    : windows_(std::make_unique<WindowFilter>()),
      listener_(std::make_shared<StyleListener>(std::weak_ptr<NSObject>(), nullptr)) {
    listener_->registerStyleableChangeHandler(
        [](const auto&, const std::shared_ptr<ZelStyle>& style, auto) {
            QApplication::setPalette(ZelQtPalette::paletteWithStyle(style));
        });
    qApp->installEventFilter(windows_.get());
}

ZelQtApplicationPalette::~ZelQtApplicationPalette() {
    listener_->unregisterStyleableChangeHandlers();
    QApplication::setPalette(QPalette());
}

} // namespace v1
} // namespace zel
