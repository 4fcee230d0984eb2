// SPDX-License-Identifier: Apache-2.0
// Against a bus and a portal of the tests' own, on Qt's event loop.
#include "tests/portal/PortalFixture.h"
#include "tests/support/Threads.h"

#include <ZelStyleKit/ZelQtPortalAppearance.h>

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace {

using namespace zeltest;

class QtPortalFollowingTests : public PortalTests {
protected:
    void SetUp() override {
        PortalTests::SetUp();
        if (IsSkipped()) {
            return;
        }
        sent.emplace(portal->fileDescriptor(), QSocketNotifier::Read);
        QObject::connect(&*sent, &QSocketNotifier::activated, [this] { portal->process(); });
    }
    /// Runs Qt's event loop until the condition holds; false where it never does.
    bool runUntil(const std::function<bool()>& condition) {
        QTimer late;
        late.setSingleShot(true);
        late.start(patience);
        while (!condition() && late.isActive()) {
            portal->process(); // what a call of its own has read already
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return condition();
    }
    bool followLight(const zel::ZelQtPortalAppearance& appearance) {
        return runUntil([&] {
            return appearance.portal().status() == ZelPortalStatus::Following && !isDark();
        });
    }

    std::optional<QSocketNotifier> sent;
};

TEST_F(QtPortalFollowingTests, NoThreadIsStarted) {
    const auto before = threadCount();
    const zel::ZelQtPortalAppearance appearance(host->options, 0ms);
    ASSERT_TRUE(followLight(appearance));
    EXPECT_EQ(threadCount(), before);
    portal->setScheme(1);
    portal->emitChange(1);
    EXPECT_TRUE(runUntil(isDark));
    EXPECT_EQ(threadCount(), before);
}

// The portal says nothing of a change that it missed itself.
TEST_F(QtPortalFollowingTests, AnApplicationThatBecomesActiveAsksAgain) {
    const zel::ZelQtPortalAppearance appearance(host->options, 0ms);
    ASSERT_TRUE(followLight(appearance));
    EXPECT_EQ(portal->questions(), 1);
    portal->setScheme(1);
    QWidget window;
    window.show();
    window.activateWindow();
    EXPECT_TRUE(runUntil(isDark));
    EXPECT_EQ(QGuiApplication::applicationState(), Qt::ApplicationActive);
    EXPECT_EQ(portal->questions(), 2);
}

} // namespace
