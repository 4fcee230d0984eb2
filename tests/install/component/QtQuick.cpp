// SPDX-License-Identifier: Apache-2.0
// A binding that is told that the system has turned dark.
#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQuickAttached.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <QColor>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cstdio>
#include <memory>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const zel::ZelQtMainQueue queue;
    const auto host = zel::NSApplication::sharedApplication();
    zel::ZelStyleManager::setup();
    zel::ZelQuickRegisterTypes();

    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQml\nimport ZelStyleKit\n"
                      "QtObject { property var shown: Zel.labelColor }",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    if (!object) {
        std::puts(qPrintable(component.errorString()));
        return 1;
    }
    host->setEffectiveAppearance(zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    QCoreApplication::processEvents();
    const auto shown = object->property("shown").value<QColor>();
    std::printf("label %s\n", qPrintable(shown.name()));
    return shown == QColor(255, 255, 255) ? 0 : 1;
}
