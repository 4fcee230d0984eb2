// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelQtApplicationPalette.h>

#include "QtWidgetLink.h"

#include <ZelStyleKit/ZelQtPalette.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <QApplication>
#include <QEvent>

#include <utility>
#include <vector>

namespace zel::inline v1 {
/// Sees each window before it is first shown, and follows its style from then on.
class ZelQtApplicationPalette::Windows final : public QObject {
    /// A window's palette: its own only while its style is not the application's. It takes away no
    /// palette but what it has given.
    class WindowPalette {
    public:
        explicit WindowPalette(QWidget& window) : window_(window) {}

        void apply(const std::shared_ptr<ZelStyle>& style) {
            if (style != ZelStyleDomain::defaultDomain()->mainStyle()) {
                given_ = true;
                window_.setPalette(ZelQtPalette::paletteWithStyle(style));
            } else if (std::exchange(given_, false)) {
                window_.setPalette(QPalette());
            }
        }
        void applyAgain() { apply(ZelStyle::forStyleable(ZelQtStyleable::of(window_))); }
        void end() {
            QtWidgetLink::of(window_).setPaletteHandler(nullptr);
            if (std::exchange(given_, false)) {
                window_.setPalette(QPalette());
            }
        }

    private:
        QWidget& window_;
        bool given_ = false;
    };

public:
    ~Windows() override { forEach(&WindowPalette::end); }
    Windows() = default;
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto type = event->type();
        if ((type == QEvent::Polish || type == QEvent::Show) && watched->isWidgetType()) {
            auto& widget = *static_cast<QWidget*>(watched);
            if (widget.isWindow()) {
                aboutToShow(widget, type);
            }
        }
        return false;
    }
    /// The application's style is another one: a window that keeps its own hears nothing of that.
    void applyAgain() { forEach(&WindowPalette::applyAgain); }

private:
    // A popup that was made without a parent, as context menus often are, is taken for the focused
    // widget's, or the active window's, each time anew.
    void aboutToShow(QWidget& window, QEvent::Type type) {
        QtWidgetLink& link = QtWidgetLink::of(window);
        const auto kind = window.windowType();
        if (type == QEvent::Show && !window.parentWidget() &&
            (kind == Qt::Popup || kind == Qt::ToolTip)) {
            QWidget* const focused = QApplication::focusWidget();
            link.supposeOwner(focused ? focused : QApplication::activeWindow());
        }
        if (!link.hasPaletteHandler()) {
            follow(window);
        }
    }
    void follow(QWidget& window) {
        const auto palette = std::make_shared<WindowPalette>(window);
        windows_.push_back(palette);
        QtWidgetLink::of(window).setPaletteHandler(
            [palette](const auto& style) { palette->apply(style); });
    }
    void forEach(void (WindowPalette::*operation)()) {
        std::erase_if(windows_, [](const auto& each) { return each.expired(); });
        const auto windows = windows_; // a palette's change may show, or end, another window
        for (const auto& each : windows) {
            if (const auto palette = each.lock()) {
                (*palette.*operation)();
            }
        }
    }

    std::vector<std::weak_ptr<WindowPalette>> windows_; // the windows' links own them
};

ZelQtApplicationPalette::ZelQtApplicationPalette()
    : windows_(std::make_unique<Windows>()),
      listener_(std::make_shared<StyleListener>(std::weak_ptr<NSObject>(), nullptr)) {
    listener_->start([windows = windows_.get()](const auto& style) {
        QApplication::setPalette(ZelQtPalette::paletteWithStyle(style));
        windows->applyAgain();
    });
    QCoreApplication::instance()->installEventFilter(windows_.get());
}

ZelQtApplicationPalette::~ZelQtApplicationPalette() {
    listener_->stop();
    QApplication::setPalette(QPalette());
}

} // namespace zel::inline v1
