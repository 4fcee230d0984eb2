// SPDX-License-Identifier: Apache-2.0
// Qt Widgets, as the contract knows a toolkit.
#include "tests/contract/Toolkit.h"

#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtSettingsStore.h>
#include <ZelStyleKit/ZelQtStyleable.h>
#ifdef ZEL_CONTRACT_PORTAL
#include <ZelStyleKit/ZelQtPortalAppearance.h>
#endif

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QMenu>
#include <QPointer>
#include <QTimer>

#include <optional>
#include <vector>

namespace {

class QtToolkit : public zeltest::Toolkit {
public:
    QtToolkit(int& argc, char** argv) : application_(argc, argv) {
        QCoreApplication::setOrganizationName(QStringLiteral("Contract"));
        QCoreApplication::setApplicationName(QStringLiteral("Contract"));
    }

    void connect() override { queue_.emplace(); }
    void disconnect() override {
        for (const auto& window : windows_) {
            delete window.data();
        }
        windows_.clear();
#ifdef ZEL_CONTRACT_PORTAL
        portal_.reset();
#endif
        queue_.reset();
    }

    Widget makeWindow() override {
        windows_.emplace_back(new QWidget);
        return windows_.back();
    }
    Widget makeChild(Widget parent) override {
        return new QWidget(widgetOf(parent));
    }
    Widget makePopup(Widget owner) override {
        return new QMenu(widgetOf(owner));
    }
    Widget makeDialog(Widget ownerWindow) override {
        return new QDialog(widgetOf(ownerWindow));
    }
    void move(Widget child, Widget newParent) override {
        widgetOf(child)->setParent(widgetOf(newParent));
    }
    void destroy(Widget widget) override {
        delete widgetOf(widget);
    }
    std::shared_ptr<zel::NSObject> styleableOf(Widget widget) override {
        return zel::ZelQtStyleable::of(*widgetOf(widget));
    }

    void run(std::chrono::milliseconds atMost) override {
        if (atMost.count() == 0) {
            QCoreApplication::processEvents();
            return;
        }
        QEventLoop loop;
        QTimer::singleShot(atMost, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void keepDefaultsAsApplicationsDo() override {
        zel::NSUserDefaults::standardUserDefaults().setStore(
            std::make_shared<zel::ZelQtSettingsStore>());
    }
#ifdef ZEL_CONTRACT_PORTAL
    void followDesktop() override {
        portal_.emplace(zel::ZelPortalOptions{}, std::chrono::seconds(20));
    }
#endif

private:
    static QWidget* widgetOf(Widget widget) {
        return static_cast<QWidget*>(widget);
    }

    QApplication application_;
    std::optional<zel::ZelQtMainQueue> queue_;
#ifdef ZEL_CONTRACT_PORTAL
    std::optional<zel::ZelQtPortalAppearance> portal_;
#endif
    std::vector<QPointer<QWidget>> windows_;
};

} // namespace

std::unique_ptr<zeltest::Toolkit> zeltest::makeToolkit(int& argc, char** argv) {
    return std::make_unique<QtToolkit>(argc, argv);
}
