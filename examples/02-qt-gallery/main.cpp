// SPDX-License-Identifier: Apache-2.0
// A gallery: controls, every predefined attribute, a part of the window that is pinned to a scheme,
// a style derived from its parent, and a menu to choose a mode from. Also what it takes to have a
// Qt application follow the desktop, in order.
#include "FirstFrame.h"
#include "GalleryOptions.h"
#include "GalleryWindow.h"
#include "SoftStyle.h"
#include "TintedStyle.h"

#include <ZelStyleKit/ZelQtApplicationPalette.h>
#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtSettingsStore.h>
#include <ZelStyleKit/ZelStyleKit.h>
#ifdef GALLERY_FOLLOWS_PORTAL
#include <ZelStyleKit/ZelQtPortalAppearance.h>
#endif

#include <QApplication>

#include <optional>

namespace {

void makeSystem(std::string_view appearance) {
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(appearance));
}

} // namespace

int main(int argc, char** argv) {
    const gallery::Clock started; // before anything that takes time
    const gallery::Options options = gallery::optionsOf(argc, argv);

    // What the desktop looks like, before Qt is started and the first style is asked for.
    makeSystem(options.source == gallery::Source::Dark ? zel::NSAppearanceNameDarkAqua
                                                       : zel::NSAppearanceNameAqua);
#ifdef GALLERY_FOLLOWS_PORTAL
    std::optional<zel::ZelQtPortalAppearance> portal;
    if (options.source == gallery::Source::Portal) {
        portal.emplace();
    }
#endif

    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Gallery"));
    QApplication::setOrganizationName(QStringLiteral("ZelStyleKit"));
    QApplication::setStyle(new gallery::SoftStyle); // takes it over
    QFont font = QApplication::font();
    font.setFamilies({QStringLiteral("Inter"), QStringLiteral("Cantarell"),
                      QStringLiteral("Noto Sans"), QStringLiteral("Liberation Sans")});
    QApplication::setFont(font);

    // The library on Qt's event loop, the user's choice in Qt's settings.
    const zel::ZelQtMainQueue queue;
    zel::NSUserDefaults::standardUserDefaults().setStore(
        std::make_shared<zel::ZelQtSettingsStore>());
    zel::ZelStyleManager::setup();
    gallery::addTintedStyles();
    const zel::ZelQtApplicationPalette palette;

    gallery::GalleryWindow window;
    const gallery::FirstFrame frame(window, options, started);
    window.show();
    return QApplication::exec();
}
