// SPDX-License-Identifier: Apache-2.0
// An item in a window, and a binding, that are told that the system has turned dark. Without QML
// modules other than Qt's own, which not every machine that builds has.
#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQuickAttached.h>
#include <ZelStyleKit/ZelQuickStyleable.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <QColor>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

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
    QQuickWindow window;
    QQuickItem item(window.contentItem());
    const auto* const attached = static_cast<zel::ZelQuickAttached*>(
        qmlAttachedPropertiesObject<zel::ZelQuickAttached>(&item));
    const bool placed = zel::ZelQuickStyleable::of(item)->parentZelStyleable() ==
                        zel::ZelQuickStyleable::of(*window.contentItem());

    host->setEffectiveAppearance(zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameDarkAqua));
    QCoreApplication::processEvents();
    const auto shown = object->property("shown").value<QColor>();
    std::printf("label %s, item %s, %s\n", qPrintable(shown.name()),
                qPrintable(attached->labelColor().name()), placed ? "placed" : "not placed");
    const QColor white(255, 255, 255);
    return placed && shown == white && attached->labelColor() == white ? 0 : 1;
}
