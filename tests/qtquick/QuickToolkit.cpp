// SPDX-License-Identifier: Apache-2.0
// Qt Quick, as the contract knows a toolkit. Windows are made and never shown; popups are those of
// Qt Quick Controls.
#include "tests/qt6/QtLoopToolkit.h"

#include <ZelStyleKit/ZelQuickAttached.h>
#include <ZelStyleKit/ZelQuickStyleable.h>

#include <QGuiApplication>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <stdexcept>
#include <vector>

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

class QuickToolkit : public zeltest::QtLoopToolkit {
public:
    QuickToolkit(int& argc, char** argv) : application_(argc, argv) {
        QCoreApplication::setOrganizationName(QStringLiteral("Contract"));
        QCoreApplication::setApplicationName(QStringLiteral("QuickContract"));
        popup_.setData("import QtQuick.Controls.Basic\nPopup {}", QUrl());
    }

    Widget makeWindow() override {
        windows_.emplace_back(new QQuickWindow);
        return windows_.back()->contentItem();
    }
    Widget makeChild(Widget parent) override { return new QQuickItem(itemOf(parent)); }
    Widget makePopup(Widget owner) override {
        QObject* const popup = popup_.create();
        if (!popup) {
            throw std::runtime_error(popup_.errorString().toStdString());
        }
        popup->setParent(itemOf(owner));
        popup->setProperty("parent", QVariant::fromValue(itemOf(owner)));
        return popup->property("contentItem").value<QQuickItem*>()->parentItem();
    }
    Widget makeDialog(Widget ownerWindow) override {
        const auto dialog = makeWindow();
        windows_.back()->setTransientParent(itemOf(ownerWindow)->window());
        return dialog;
    }
    void move(Widget child, Widget newParent) override {
        itemOf(child)->setParentItem(itemOf(newParent));
        itemOf(child)->setParent(itemOf(newParent)); // who owns it
    }
    void destroy(Widget widget) override {
        QQuickItem* const item = itemOf(widget);
        if (item->window() && item->window()->contentItem() == item) {
            delete item->window();
        } else {
            delete item;
        }
    }
    std::shared_ptr<zel::NSObject> styleableOf(Widget widget) override {
        return zel::ZelQuickStyleable::of(*itemOf(widget));
    }
    void setScheme(Widget widget, std::string_view identifier) override {
        attachedTo(widget)->setScheme(textOf(identifier));
    }
    void setStyle(Widget widget, std::string_view identifier) override {
        attachedTo(widget)->setStyle(textOf(identifier));
    }

protected:
    void destroyWindows() override {
        for (const auto& window : windows_) {
            delete window.data();
        }
        windows_.clear();
    }

private:
    static QQuickItem* itemOf(Widget widget) { return static_cast<QQuickItem*>(widget); }
    static zel::ZelQuickAttached* attachedTo(Widget widget) {
        auto* const attached = qmlAttachedPropertiesObject<zel::ZelQuickAttached>(itemOf(widget));
        return static_cast<zel::ZelQuickAttached*>(attached);
    }

    QGuiApplication application_;
    QQmlEngine engine_;
    QQmlComponent popup_{&engine_};
    std::vector<QPointer<QQuickWindow>> windows_;
};

} // namespace

std::unique_ptr<zeltest::Toolkit> zeltest::makeToolkit(int& argc, char** argv) {
    zel::ZelQuickRegisterTypes();
    return std::make_unique<QuickToolkit>(argc, argv);
}
