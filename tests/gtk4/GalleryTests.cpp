// SPDX-License-Identifier: Apache-2.0
// The pixels of the GTK gallery, which runs as its users run it.
#include "tests/gtk4/SilentBus.h"
#include "tests/support/Fastest.h"
#include "tests/tools/Process.h"

#include <ZelStyleKit/ZelPortalAppearance.h>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <ostream>

namespace {

using namespace zeltest;

struct Pixel {
    int red = -1;
    int green = -1;
    int blue = -1;

    /// Equal but for rounding.
    [[nodiscard]] bool isNear(const Pixel& other) const {
        return std::abs(red - other.red) <= 1 && std::abs(green - other.green) <= 1 &&
               std::abs(blue - other.blue) <= 1;
    }
    friend std::ostream& operator<<(std::ostream& out, const Pixel& pixel) {
        return out << pixel.red << ' ' << pixel.green << ' ' << pixel.blue;
    }
};

struct Expected {
    const char* key;
    Pixel light;
    Pixel dark;
};

// The sRGB values of the styles; opaque ones, since others are shown over a chequered ground.
constexpr std::array expected{
    Expected{"grayColor", {19, 19, 19}, {243, 243, 243}},
    Expected{"grayColor8", {210, 210, 210}, {53, 53, 53}},
    Expected{"whiteColor", {255, 255, 255}, {255, 255, 255}},
    Expected{"blueColor", {0, 122, 255}, {0, 122, 255}},
    Expected{"greenColor", {52, 199, 89}, {52, 199, 89}},
    Expected{"orangeColor", {255, 149, 0}, {255, 149, 0}},
    Expected{"purpleColor", {175, 82, 222}, {175, 82, 222}},
    Expected{"tealColor", {90, 200, 250}, {90, 200, 250}},
    Expected{"backgroundColor", {255, 255, 255}, {0, 0, 0}},
    Expected{"backgroundColorSecondary", {236, 236, 236}, {28, 28, 28}},
    Expected{"backgroundColorTertiary", {255, 255, 255}, {44, 44, 44}},
    Expected{"labelColor", {0, 0, 0}, {255, 255, 255}},
    Expected{"controlColorInactive", {153, 153, 153}, {204, 204, 204}},
    Expected{"controlColorDestructive", {255, 59, 48}, {255, 59, 48}},
    Expected{"tableSectionHeaderBackgroundColor", {243, 243, 243}, {53, 53, 53}},
    Expected{"toolbarBackgroundColor", {248, 248, 248}, {24, 24, 24}},
    // Dark in both: it is pinned.
    Expected{"sidebar", {24, 24, 24}, {24, 24, 24}},
    // The surface of the style that is derived: its parent's, with 16 % of the accent.
    Expected{"tinted", {214, 234, 255}, {37, 56, 78}},
};

/// One run of the gallery, which takes a picture.
class Gallery {
public:
    explicit Gallery(Arguments arguments, Variables variables = {},
                     std::shared_ptr<User> user = std::make_shared<User>())
        : user_(std::move(user)) {
        arguments.insert(arguments.end(), {"--screenshot", picture()});
        process_.emplace(GALLERY_PROGRAM, std::move(arguments),
                         user_->surroundings(std::move(variables)));
        first_ = process_->readLine().value_or("(nothing)");
    }

    /// "first frame after 123 ms: dark"
    [[nodiscard]] bool beganDark() const { return first_.ends_with(": dark"); }
    [[nodiscard]] long firstFrame() const {
        const std::string_view before = "first frame after ";
        return first_.starts_with(before) ? std::stol(first_.substr(before.size())) : -1;
    }
    [[nodiscard]] const std::string& firstLine() const { return first_; }

    void expectPixels(bool dark) {
        const Outcome outcome = process_->finish();
        ASSERT_EQ(outcome.code, 0) << first_ << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        places_ = linesOf(outcome.output);
        EXPECT_EQ(places_.size(), 57U); // 55 attributes, the sidebar and the derived style's card
        GdkPixbuf* const pixels = gdk_pixbuf_new_from_file(picture().c_str(), nullptr);
        ASSERT_NE(pixels, nullptr);
        for (const Expected& each : expected) {
            const Pixel& wanted = dark ? each.dark : each.light;
            const Pixel found = pixelOf(pixels, each.key);
            EXPECT_TRUE(found.isNear(wanted)) << each.key << ": " << found << ", not " << wanted;
        }
        g_object_unref(pixels);
    }

private:
    [[nodiscard]] std::string picture() const { return user_->folder() + "/picture.png"; }
    [[nodiscard]] Pixel pixelOf(const GdkPixbuf* pixels, const std::string& key) const {
        for (const std::string& line : places_) {
            int x = 0;
            int y = 0;
            if (line.starts_with(key + " ") &&
                std::sscanf(line.c_str() + key.size(), "%d %d", &x, &y) == 2) {
                const guint8* const at =
                    gdk_pixbuf_read_pixels(pixels) +
                    static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixels) +
                    static_cast<std::ptrdiff_t>(x) * gdk_pixbuf_get_n_channels(pixels);
                return {at[0], at[1], at[2]};
            }
        }
        return {};
    }

    const std::shared_ptr<User> user_;
    std::optional<Process> process_;
    std::string first_;
    std::vector<std::string> places_;
};

TEST(GtkGalleryTests, InTheLightEverySwatchHasTheLightStylesColour) {
    Gallery gallery({"--source", "light"});
    EXPECT_FALSE(gallery.beganDark());
    gallery.expectPixels(false);
}

TEST(GtkGalleryTests, InTheDarkEverySwatchHasTheDarkStylesColour) {
    Gallery gallery({"--source", "dark"});
    EXPECT_TRUE(gallery.beganDark());
    gallery.expectPixels(true);
}

TEST(GtkGalleryTests, AfterALiveSwitchEverySwatchHasTheOtherStylesColour) {
    Gallery turning({"--source", "light", "--then", "dark"});
    EXPECT_FALSE(turning.beganDark());
    turning.expectPixels(true);
    Gallery back({"--source", "dark", "--then", "light"});
    EXPECT_TRUE(back.beganDark());
    back.expectPixels(false);
}

TEST(GtkGalleryTests, AModeChosenFromTheMenuIsShownAndRemembered) {
    const auto user = std::make_shared<User>();
    Gallery choosing({"--source", "light", "--choose", "always-dark", "--then", "dark"}, {}, user);
    EXPECT_FALSE(choosing.beganDark());
    choosing.expectPixels(true);
    Gallery next({"--source", "light"}, {}, user);
    EXPECT_TRUE(next.beganDark());
    next.expectPixels(true);
}

TEST(GtkGalleryTests, AModeThatIsNotInTheMenuIsAFailure) {
    const User user;
    Process process(GALLERY_PROGRAM, {"--source", "light", "--choose", "sepia"},
                    user.surroundings());
    const Outcome outcome = process.finish();
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "There is no mode 'sepia'.\n");
}

// GTK itself would wait for such a bus without end, for the sake of other things.
TEST(GtkGalleryTests, OnABusThatNeverAnswersTheFirstFrameComesAfterTheBoundedWait) {
    const SilentBus bus;
    const auto firstFrameOn = [](const std::string& address) {
        Gallery gallery({"--source", "portal"},
                        {{"DBUS_SESSION_BUS_ADDRESS", address}, {"GTK_A11Y", "atspi"}});
        EXPECT_GE(gallery.firstFrame(), 0) << gallery.firstLine();
        gallery.expectPixels(false);
        return gallery.firstFrame();
    };
    Fastest without;
    Fastest silent;
    int rounds = 0;
    do {
        without.add(firstFrameOn("unix:path=/nonexistent/bus"));
        silent.add(firstFrameOn(bus.address()));
    } while (++rounds < 5 && silent.value() - without.value() >= 300);
    EXPECT_GE(silent.value(), 100);
    EXPECT_LT(silent.value() - without.value(), 300); // 100 ms of waiting, on a busy machine
}

TEST(GtkGalleryTests, APictureThatCannotBeWrittenIsAFailure) {
    const User user;
    Process process(GALLERY_PROGRAM, {"--source", "light", "--screenshot", "/nonexistent/a.png"},
                    user.surroundings());
    const Outcome outcome = process.finish();
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "/nonexistent/a.png can't be written\n");
}

TEST(GtkGalleryTests, TheHelpNamesEveryOption) {
    const User user;
    Process process(GALLERY_PROGRAM, {"--help"}, user.surroundings());
    const Outcome outcome = process.finish();
    EXPECT_EQ(outcome.code, 0);
    for (const char* const option : {"--source", "--screenshot", "--then", "--choose", "--help"}) {
        EXPECT_NE(outcome.output.find(option), std::string::npos) << option;
    }
}

TEST(GtkGalleryTests, AWrongWordIsRefusedWithAReason) {
    const User user;
    Process process(GALLERY_PROGRAM, {"--source", "dusk"}, user.surroundings());
    const Outcome outcome = process.finish();
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.errors, "--source is portal, light or dark, not 'dusk'.\nTry --help.\n");
}

/// In a desktop of the tests' own, see run_in_a_desktop.sh.
class GtkGalleryDesktopTests : public testing::Test {
protected:
    static void setDesktop(const std::string& colorScheme) {
        const std::string command =
            "gsettings set org.gnome.desktop.interface color-scheme " + colorScheme;
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    /// Starts the portal, which on a desktop has been running for long when an application starts.
    static void wakePortal() {
        zel::ZelPortalAppearance portal;
        zel::ZelPortalOptions options;
        options.answerTimeout = std::chrono::seconds(20);
        portal.start(options);
        ASSERT_EQ(portal.waitForFirstAnswer(std::chrono::seconds(20)),
                  zel::ZelPortalStatus::Following);
    }
    static Variables desktop() {
        return {{"DBUS_SESSION_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS")},
                {"GSK_RENDERER", "cairo"}};
    }
};

TEST_F(GtkGalleryDesktopTests, OnADarkDesktopTheFirstFrameIsDark) {
    setDesktop("prefer-dark");
    wakePortal();
    Gallery gallery({"--source", "portal"}, desktop());
    EXPECT_TRUE(gallery.beganDark()) << gallery.firstLine();
    gallery.expectPixels(true);
}

TEST_F(GtkGalleryDesktopTests, AWindowThatIsOpenTurnsWithTheDesktop) {
    setDesktop("default");
    wakePortal();
    Gallery gallery({"--source", "portal", "--then", "dark"}, desktop());
    EXPECT_FALSE(gallery.beganDark()) << gallery.firstLine();
    setDesktop("prefer-dark");
    gallery.expectPixels(true);
}

} // namespace
