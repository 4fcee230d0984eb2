// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/contract/Toolkit.h"

#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQtSettingsStore.h>
#ifdef ZEL_CONTRACT_PORTAL
#include <ZelStyleKit/ZelQtPortalAppearance.h>
#endif

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <optional>

namespace zeltest {

/// What toolkits on Qt have in common: the library on Qt's event loop, defaults in its settings.
/// Needs the application object, which the toolkit's own class makes.
class QtLoopToolkit : public Toolkit {
public:
    void connect() override { queue_.emplace(); }
    void disconnect() override {
        destroyWindows();
#ifdef ZEL_CONTRACT_PORTAL
        portal_.reset();
#endif
        queue_.reset();
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

protected:
    /// Destroys every window that is left.
    virtual void destroyWindows() = 0;

private:
    std::optional<zel::ZelQtMainQueue> queue_;
#ifdef ZEL_CONTRACT_PORTAL
    std::optional<zel::ZelQtPortalAppearance> portal_;
#endif
};

} // namespace zeltest
