// SPDX-License-Identifier: Apache-2.0
// An application whose window is told that the system has turned dark.
#include <ZelStyleKit/ZelQtApplicationPalette.h>
#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <QApplication>
#include <QWidget>

#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const zel::ZelQtMainQueue queue;
    const auto host = zel::NSApplication::sharedApplication();
    zel::ZelStyleManager::setup();
    const zel::ZelQtApplicationPalette palette;

    QWidget window;
    bool dark = false;
    zel::ZelQtStyleable::of(window)->registerStyleableChangeHandler(
        [&dark](const auto&, const auto& style, auto) { dark = style->isDarkStyle(); });
    host->setEffectiveAppearance(zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    QCoreApplication::processEvents();
    QCoreApplication::processEvents(); // Qt hands on an application's palette in its next turn
    const QColor text = window.palette().color(QPalette::WindowText);
    std::printf("%s, text %s\n", dark ? "dark" : "light", qPrintable(text.name()));
    return dark && text == QColor(255, 255, 255) ? 0 : 1;
}
