// SPDX-License-Identifier: Apache-2.0
// An application object that knows no windows; a program of its own, since a process has one.
#include <ZelStyleKit/ZelQtPortalAppearance.h>

#include <QCoreApplication>
#include <QString>

#include <gtest/gtest.h>

namespace {

/// What Qt says of an object's connections.
QString connectionsOf(const QObject& object) {
    static QString said;
    said.clear();
    const auto former = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { said += line + '\n'; });
    object.dumpObjectInfo();
    qInstallMessageHandler(former);
    return said;
}

TEST(QtCoreApplicationTests, NothingIsConnectedToWhatAnApplicationWithoutWindowsLacks) {
    const QCoreApplication& application = *QCoreApplication::instance();
    const QString before = connectionsOf(application);
    EXPECT_TRUE(before.contains("SIGNALS OUT")) << qPrintable(before);
    zel::ZelPortalOptions options;
    options.busAddress = "unix:path=/nonexistent/bus";
    const zel::ZelQtPortalAppearance portal(options);
    EXPECT_EQ(portal.portal().status(), zel::ZelPortalStatus::NoBus);
    EXPECT_EQ(connectionsOf(application).toStdString(), before.toStdString());
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
