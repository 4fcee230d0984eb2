// SPDX-License-Identifier: Apache-2.0
// The pixels of the Qt gallery.
#include "tests/examples/QtGallery.h"
#include "tests/support/Fastest.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using namespace zeltest;

struct Expected {
    const char* key;
    QRgb light;
    QRgb dark;
};

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);

// The sRGB values of the styles; opaque ones, since others are shown on a chessboard.
constexpr Expected expected[] = {
    {"grayColor", qRgb(0x13, 0x13, 0x13), qRgb(0xF3, 0xF3, 0xF3)},
    {"grayColor8", qRgb(0xD2, 0xD2, 0xD2), qRgb(0x35, 0x35, 0x35)},
    {"blueColor", qRgb(0, 122, 255), qRgb(0, 122, 255)},
    {"greenColor", qRgb(52, 199, 89), qRgb(52, 199, 89)},
    {"orangeColor", qRgb(255, 149, 0), qRgb(255, 149, 0)},
    {"purpleColor", qRgb(175, 82, 222), qRgb(175, 82, 222)},
    {"tealColor", qRgb(90, 200, 250), qRgb(90, 200, 250)},
    {"backgroundColor", white, black},
    {"backgroundColorSecondary", qRgb(236, 236, 236), qRgb(0x1C, 0x1C, 0x1C)},
    {"backgroundColorTertiary", white, qRgb(0x2C, 0x2C, 0x2C)},
    {"labelColor", black, white},
    {"accentColor", qRgb(0, 122, 255), qRgb(0, 122, 255)},
    {"controlColorInactive", qRgb(0x99, 0x99, 0x99), qRgb(0xCC, 0xCC, 0xCC)},
    {"tableSectionHeaderBackgroundColor", qRgb(0xF3, 0xF3, 0xF3), qRgb(0x35, 0x35, 0x35)},
    {"toolbarBackgroundColor", qRgb(0xF8, 0xF8, 0xF8), qRgb(0x18, 0x18, 0x18)},
    // Dark in both: it is pinned.
    {"sidebar", qRgb(0x18, 0x18, 0x18), qRgb(0x18, 0x18, 0x18)},
    // The surface of the style that is derived: its parent's, with 16 % of the accent.
    {"tinted", qRgb(214, 234, 255), qRgb(37, 56, 78)},
};

bool isNear(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) <= 1 && std::abs(qGreen(a) - qGreen(b)) <= 1 &&
           std::abs(qBlue(a) - qBlue(b)) <= 1;
}

void expectPixels(const GalleryRun& run, bool dark) {
    ASSERT_EQ(run.status, 0) << qPrintable(run.output);
    EXPECT_EQ(run.points.size(), 57U); // 55 attributes, the sidebar and the derived style's card
    for (const Expected& each : expected) {
        const QRgb wanted = dark ? each.dark : each.light;
        EXPECT_TRUE(isNear(run.pixel(each.key), wanted))
            << each.key << ": " << std::hex << run.pixel(each.key) << ", not " << wanted;
    }
}

GalleryRun runGallery(const QStringList& arguments) {
    GalleryProcess gallery(arguments);
    gallery.start();
    return gallery.finish();
}

TEST(QtGalleryTests, InTheLightEverySwatchHasTheLightStylesColour) {
    expectPixels(runGallery({"--source", "light"}), false);
}

TEST(QtGalleryTests, InTheDarkEverySwatchHasTheDarkStylesColour) {
    const GalleryRun run = runGallery({"--source", "dark"});
    expectPixels(run, true);
    EXPECT_TRUE(run.beganDark());
}

TEST(QtGalleryTests, AfterALiveSwitchEverySwatchHasTheOtherStylesColour) {
    const GalleryRun run = runGallery({"--source", "light", "--then", "dark"});
    EXPECT_FALSE(run.beganDark());
    expectPixels(run, true);
    expectPixels(runGallery({"--source", "dark", "--then", "light"}), false);
}

TEST(QtGalleryTests, AModeChosenFromTheMenuIsShownAndRemembered) {
    GalleryProcess choosing({"--source", "light", "--choose", "always-dark", "--then", "dark"});
    choosing.start();
    const GalleryRun chosen = choosing.finish();
    EXPECT_FALSE(chosen.beganDark());
    expectPixels(chosen, true);

    GalleryProcess next({"--source", "light"});
    next.inheritSettings(choosing);
    next.start();
    const GalleryRun remembered = next.finish();
    EXPECT_TRUE(remembered.beganDark());
    expectPixels(remembered, true);
}

TEST(QtGalleryTests, AModeThatIsNotInTheMenuIsAFailure) {
    EXPECT_EQ(runGallery({"--source", "light", "--choose", "sepia"}).status, 1);
}

TEST(QtGalleryTests, AWrongWordIsRefusedWithAReason) {
    QProcess gallery;
    gallery.start(GALLERY_PROGRAM, {"--source", "dusk"});
    ASSERT_TRUE(gallery.waitForFinished());
    EXPECT_EQ(gallery.exitCode(), 2);
    EXPECT_TRUE(
        gallery.readAllStandardError().contains("--source is portal, light or dark, not 'dusk'."));
}

TEST(QtGalleryTests, TheHelpNamesEveryOption) {
    QProcess gallery;
    gallery.start(GALLERY_PROGRAM, {"--help"});
    ASSERT_TRUE(gallery.waitForFinished());
    EXPECT_EQ(gallery.exitCode(), 0);
    const QByteArray help = gallery.readAllStandardOutput();
    for (const char* option : {"--source", "--screenshot", "--then", "--choose", "--help"}) {
        EXPECT_TRUE(help.contains(option)) << option;
    }
}

} // namespace

#ifdef GALLERY_FOLLOWS_PORTAL
#include <ZelStyleKit/ZelPortalAppearance.h>

namespace {

void setDesktop(const char* colorScheme) {
    const std::string command =
        std::string("gsettings set org.gnome.desktop.interface color-scheme ") + colorScheme;
    ASSERT_EQ(std::system(command.c_str()), 0);
}

/// Starts the portal, which on a desktop has been running for long when an application starts.
void wakePortal() {
    zel::ZelPortalAppearance portal;
    zel::ZelPortalOptions options;
    options.answerTimeout = std::chrono::seconds(20);
    portal.start(options);
    ASSERT_EQ(portal.waitForFirstAnswer(std::chrono::seconds(20)), zel::ZelPortalStatus::Following);
}

TEST(QtGalleryDesktopTests, OnADarkDesktopTheFirstFrameIsDark) {
    setDesktop("prefer-dark");
    wakePortal();
    const GalleryRun run = runGallery({"--source", "portal"});
    EXPECT_TRUE(run.beganDark()) << qPrintable(run.output);
    expectPixels(run, true);
}

TEST(QtGalleryDesktopTests, AWindowThatIsOpenTurnsWithTheDesktop) {
    setDesktop("default");
    wakePortal();
    GalleryProcess gallery({"--source", "portal", "--then", "dark"});
    gallery.start();
    ASSERT_TRUE(gallery.waitFor(": light"));
    setDesktop("prefer-dark");
    expectPixels(gallery.finish(), true);
}

// The socket takes the connection; nobody ever reads from it.
TEST(QtGalleryTests, OnABusThatNeverAnswersTheFirstFrameComesAfterTheBoundedWait) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("bus");
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), static_cast<qsizetype>(sizeof name.sun_path));
    std::memcpy(name.sun_path, qPrintable(path), static_cast<std::size_t>(path.size()));
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const void* const untyped = &name;
    ASSERT_EQ(bind(listener, static_cast<const sockaddr*>(untyped), sizeof name), 0);
    ASSERT_EQ(listen(listener, 100), 0);

    const auto firstFrameOn = [](const QString& socketPath) {
        GalleryProcess gallery({"--source", "portal"});
        gallery.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + socketPath);
        gallery.start();
        const GalleryRun run = gallery.finish();
        expectPixels(run, false);
        EXPECT_GE(run.firstFrame(), 0);
        return run.firstFrame();
    };
    Fastest without;
    Fastest silent;
    int rounds = 0;
    do {
        without.add(firstFrameOn("/nonexistent/bus"));
        silent.add(firstFrameOn(path));
    } while (++rounds < 5 && silent.value() - without.value() >= 300);
    close(listener);
    EXPECT_GE(silent.value(), 100);
    EXPECT_LT(silent.value() - without.value(), 300); // 100 ms of waiting, on a busy machine
}

} // namespace
#endif
