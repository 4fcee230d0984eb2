// SPDX-License-Identifier: Apache-2.0
// Qt Widgets, as the contract knows a toolkit.
#include "tests/qt6/QtLoopToolkit.h"

#include <ZelStyleKit/ZelQtStyleable.h>

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QPointer>

#include <vector>

namespace {

class QtToolkit : public zeltest::QtLoopToolkit {
public:
    QtToolkit(int& argc, char** argv) : application_(argc, argv) {
        QCoreApplication::setOrganizationName(QStringLiteral("Contract"));
        QCoreApplication::setApplicationName(QStringLiteral("Contract"));
    }

    Widget makeWindow() override {
        windows_.emplace_back(new QWidget);
        return windows_.back();
    }
    Widget makeChild(Widget parent) override { return new QWidget(widgetOf(parent)); }
    Widget makePopup(Widget owner) override { return new QMenu(widgetOf(owner)); }
    Widget makeDialog(Widget ownerWindow) override { return new QDialog(widgetOf(ownerWindow)); }
    void move(Widget child, Widget newParent) override {
        widgetOf(child)->setParent(widgetOf(newParent));
    }
    void destroy(Widget widget) override { delete widgetOf(widget); }
    std::shared_ptr<zel::NSObject> styleableOf(Widget widget) override {
        return zel::ZelQtStyleable::of(*widgetOf(widget));
    }

protected:
    void destroyWindows() override {
        for (const auto& window : windows_) {
            delete window.data();
        }
        windows_.clear();
    }

private:
    static QWidget* widgetOf(Widget widget) { return static_cast<QWidget*>(widget); }

    QApplication application_;
    std::vector<QPointer<QWidget>> windows_;
};

} // namespace

std::unique_ptr<zeltest::Toolkit> zeltest::makeToolkit(int& argc, char** argv) {
    return std::make_unique<QtToolkit>(argc, argv);
}
