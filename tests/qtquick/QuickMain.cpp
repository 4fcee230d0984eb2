// SPDX-License-Identifier: Apache-2.0
// Runs the tests with an application object, and without a display.
#include <ZelStyleKit/ZelQuickAttached.h>

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    zel::ZelQuickRegisterTypes();
    return RUN_ALL_TESTS();
}
