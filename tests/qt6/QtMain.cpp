// SPDX-License-Identifier: Apache-2.0
// Runs the tests with an application object, and without a display.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
