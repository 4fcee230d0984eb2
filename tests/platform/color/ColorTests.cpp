// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/ZelAttributeValue.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <optional>
#include <thread>
#include <type_traits>

namespace {

using zel::NSColor;
using zel::NSColorSpace;
using zel::NSSystemColors;
using zel::ZelRGBA;

static_assert(std::is_trivially_copyable_v<NSColor>);
static_assert(sizeof(NSColor) <= 48);
static_assert(!std::is_default_constructible_v<NSColor>);

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// The grey level's sRGB form, one value for red, green and blue.
double sRGBLevelOfWhite(double white) {
    const auto rgba = NSColor::colorWithWhite(white, 1).sRGBComponents();
    EXPECT_TRUE(rgba.has_value());
    EXPECT_TRUE(std::isnan(white) || (rgba->red == rgba->green && rgba->green == rgba->blue));
    return rgba ? rgba->red : -1;
}

TEST(Color, EachConstructorKeepsSpaceAndComponentsAsGiven) {
    const NSColor sRGB = NSColor::colorWithSRGBRed(1.5, -0.25, 0.5, 2);
    EXPECT_EQ(&sRGB.colorSpace(), &NSColorSpace::sRGBColorSpace());
    EXPECT_EQ(sRGB.components(), (NSColor::Components{1.5, -0.25, 0.5, 2, 0}));
    EXPECT_EQ(sRGB.numberOfComponents(), 4U);

    const NSColor device = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(&device.colorSpace(), &NSColorSpace::deviceRGBColorSpace());
    EXPECT_EQ(device.components(), (NSColor::Components{0.1, 0.2, 0.3, 0.4, 0}));
    EXPECT_EQ(device.numberOfComponents(), 4U);

    const NSColor grey = NSColor::colorWithWhite(0.1, 0.2);
    EXPECT_EQ(&grey.colorSpace(), &NSColorSpace::genericGamma22GrayColorSpace());
    EXPECT_EQ(grey.components(), (NSColor::Components{0.1, 0.2, 0, 0, 0}));
    EXPECT_EQ(grey.numberOfComponents(), 2U);

    const NSColor cmyk = NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5);
    EXPECT_EQ(&cmyk.colorSpace(), &NSColorSpace::deviceCMYKColorSpace());
    EXPECT_EQ(cmyk.components(), (NSColor::Components{0.1, 0.2, 0.3, 0.4, 0.5}));
    EXPECT_EQ(cmyk.numberOfComponents(), 5U);
}

TEST(Color, AsManyComponentsAreReadAsTheSpaceHas) {
    const NSColorSpace& three = NSColorSpace::customColorSpace("three", 3, false);
    const NSColor color = NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.3, 0.4, 0.5});
    EXPECT_EQ(&color.colorSpace(), &three);
    EXPECT_EQ(color.numberOfComponents(), 3U);
    EXPECT_EQ(color.components(), (NSColor::Components{0.1, 0.2, 0.3, 0, 0}));

    const NSColorSpace& none = NSColorSpace::customColorSpace("none", 0, false);
    EXPECT_EQ(NSColor::colorWithColorSpace(none, {1, 2, 3, 4, 5}).components(),
              (NSColor::Components{0, 0, 0, 0, 0}));
}

TEST(Color, WhiteBlackAndClearAreGreys) {
    EXPECT_EQ(NSColor::whiteColor(), NSColor::colorWithWhite(1, 1));
    EXPECT_EQ(NSColor::blackColor(), NSColor::colorWithWhite(0, 1));
    EXPECT_EQ(NSColor::clearColor(), NSColor::colorWithWhite(0, 0));
}

TEST(Color, ColoursAreEqualWhenSpaceAndComponentsAre) {
    const NSColor color = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(color, NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4));
    EXPECT_NE(color, NSColor::colorWithSRGBRed(0.2, 0.2, 0.3, 0.4));
    EXPECT_NE(color, NSColor::colorWithSRGBRed(0.1, 0.3, 0.3, 0.4));
    EXPECT_NE(color, NSColor::colorWithSRGBRed(0.1, 0.2, 0.4, 0.4));
    EXPECT_NE(color, NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.5));
    EXPECT_NE(NSColor::colorWithDeviceCyan(0, 0, 0, 0, 0),
              NSColor::colorWithDeviceCyan(0, 0, 0, 0, 1));
}

TEST(Color, TheSameComponentsInAnotherSpaceAreAnotherColour) {
    EXPECT_NE(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4),
              NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4));
    EXPECT_NE(NSColor::whiteColor(), NSColor::colorWithSRGBRed(1, 1, 1, 1));
}

TEST(Color, AComponentThatIsNotANumberEqualsNothing) {
    const NSColor color = NSColor::colorWithSRGBRed(notANumber, 0, 0, 1);
    const NSColor copy = color;
    EXPECT_FALSE(color == copy);
}

TEST(Color, ComponentsThatTheSpaceDoesNotHaveTakeNoPartInEquality) {
    const NSColorSpace& three = NSColorSpace::customColorSpace("three", 3, false);
    EXPECT_EQ(NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.3, 0.4, 0.5}),
              NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.3, 0.6, 0.7}));
}

TEST(Color, RGBColoursAreTheirOwnSRGBForm) {
    EXPECT_EQ(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).sRGBComponents(),
              (ZelRGBA{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(NSColor::colorWithDeviceRed(0.1, -0.2, 1.3, 0.4).sRGBComponents(),
              (ZelRGBA{0.1, -0.2, 1.3, 0.4}));
}

TEST(Color, AGreyBecomesSRGBThroughLinearLight) {
    // (w ^ 2.2) encoded by IEC 61966-2-1; the first level lies on that curve's straight piece.
    EXPECT_NEAR(sRGBLevelOfWhite(0.02), 0.00236335250836042256, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(0.12), 0.09606665114320914970, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(0.22), 0.20831357552675867870, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(0.5), 0.50386678227452825206, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(0.95), 0.95154322772966184793, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(0.9725), 0.97337442810950744424, 1e-15);
}

TEST(Color, GreyLevelsZeroAndOneConvertExactly) {
    EXPECT_EQ(NSColor::whiteColor().sRGBComponents(), (ZelRGBA{1, 1, 1, 1}));
    EXPECT_EQ(NSColor::blackColor().sRGBComponents(), (ZelRGBA{0, 0, 0, 1}));
    EXPECT_EQ(NSColor::clearColor().sRGBComponents(), (ZelRGBA{0, 0, 0, 0}));
}

TEST(Color, AlphaOfAGreyIsNotConverted) {
    EXPECT_EQ(NSColor::colorWithWhite(0.5, 0.3).sRGBComponents()->alpha, 0.3);
    EXPECT_EQ(NSColor::colorWithWhite(0.5, -2).sRGBComponents()->alpha, -2);
}

TEST(Color, GreyLevelsOutsideTheRangeFollowTheCurveAndItsMirrorImage) {
    EXPECT_NEAR(sRGBLevelOfWhite(1.5), 1.47492255431308245696, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(-1.5), -1.47492255431308245696, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(-0.02), -0.00236335250836042256, 1e-15);
    EXPECT_NEAR(sRGBLevelOfWhite(-0.5), -0.50386678227452825206, 1e-15);
}

TEST(Color, AGreyLevelThatIsNotANumberStaysNotANumber) {
    EXPECT_TRUE(std::isnan(sRGBLevelOfWhite(notANumber)));
    EXPECT_EQ(NSColor::colorWithWhite(notANumber, 0.5).sRGBComponents()->alpha, 0.5);
}

TEST(Color, AlphaIsReplacedInTheColoursOwnSpace) {
    EXPECT_EQ(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).colorWithAlphaComponent(0.25),
              NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.25));
    EXPECT_EQ(NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4).colorWithAlphaComponent(0.25),
              NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.25));
    EXPECT_EQ(NSColor::colorWithWhite(0.1, 0.2).colorWithAlphaComponent(0.25),
              NSColor::colorWithWhite(0.1, 0.25));
    EXPECT_EQ(NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 1).colorWithAlphaComponent(0.25),
              NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.25));
    const NSColorSpace& three = NSColorSpace::customColorSpace("two and alpha", 3, true);
    EXPECT_EQ(NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.3}).colorWithAlphaComponent(0.25),
              NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.25}));
}

TEST(Color, ReplacingAlphaLeavesTheReceiverAsItWas) {
    const NSColor color = NSColor::colorWithWhite(0.1, 0.2);
    EXPECT_NE(color.colorWithAlphaComponent(0.25), color);
    EXPECT_EQ(color, NSColor::colorWithWhite(0.1, 0.2));
}

TEST(Color, AColourOfASpaceWithoutAlphaStaysAsItIs) {
    const NSColorSpace& three = NSColorSpace::customColorSpace("three", 3, false);
    const NSColorSpace& none = NSColorSpace::customColorSpace("none", 0, false);
    const NSColor color = NSColor::colorWithColorSpace(three, {0.1, 0.2, 0.3});
    EXPECT_EQ(color.colorWithAlphaComponent(0.25), color);
    const NSColor nothing = NSColor::colorWithColorSpace(none, {});
    EXPECT_EQ(nothing.colorWithAlphaComponent(0.25), nothing);
}

TEST(Color, AColourIsAnAttributeValueByItsContent) {
    const zel::ZelAttributeValue value = NSColor::colorWithWhite(0.1, 0.2);
    ASSERT_NE(value.color(), nullptr);
    EXPECT_EQ(*value.color(), NSColor::colorWithWhite(0.1, 0.2));
    EXPECT_FALSE(value.isNull());
    EXPECT_EQ(value.number(), nullptr);
    EXPECT_EQ(value.other(), nullptr);
    EXPECT_EQ(value, zel::ZelAttributeValue(NSColor::colorWithWhite(0.1, 0.2)));
    EXPECT_FALSE(value == zel::ZelAttributeValue(NSColor::colorWithWhite(0.1, 0.3)));
    EXPECT_FALSE(value == zel::ZelAttributeValue(zel::NSNull{}));
}

// Leaves the portable platform's system colours behind, which are none.
class SystemColors : public testing::Test {
protected:
    void TearDown() override { NSSystemColors::setSystemColors({}); }
};

// Eight different greys from `level` upwards.
NSSystemColors greys(double level) {
    const auto grey = [level](double step) { return NSColor::colorWithWhite(level + step, 1); };
    return {.blue = grey(0),
            .green = grey(1),
            .orange = grey(2),
            .purple = grey(3),
            .red = grey(4),
            .yellow = grey(5),
            .pink = grey(6),
            .windowBackground = grey(7)};
}

TEST_F(SystemColors, HuesAreAbsentWithoutAPlatformThatBringsThem) {
    EXPECT_EQ(NSColor::systemBlueColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemGreenColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemOrangeColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemPurpleColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemRedColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemYellowColor(), std::nullopt);
    EXPECT_EQ(NSColor::systemPinkColor(), std::nullopt);
    EXPECT_EQ(NSSystemColors::systemColors().windowBackground, std::nullopt);
}

TEST_F(SystemColors, TheWindowBackgroundWithoutAPlatformIsALightGrey) {
    EXPECT_EQ(NSColor::windowBackgroundColor(),
              NSColor::colorWithSRGBRed(0.92549019607843142, 0.92549019607843142,
                                        0.92549019607843142, 1));
}

TEST_F(SystemColors, EachAnswersWhatTheHostBrought) {
    NSSystemColors::setSystemColors(greys(10));
    EXPECT_EQ(NSColor::systemBlueColor(), NSColor::colorWithWhite(10, 1));
    EXPECT_EQ(NSColor::systemGreenColor(), NSColor::colorWithWhite(11, 1));
    EXPECT_EQ(NSColor::systemOrangeColor(), NSColor::colorWithWhite(12, 1));
    EXPECT_EQ(NSColor::systemPurpleColor(), NSColor::colorWithWhite(13, 1));
    EXPECT_EQ(NSColor::systemRedColor(), NSColor::colorWithWhite(14, 1));
    EXPECT_EQ(NSColor::systemYellowColor(), NSColor::colorWithWhite(15, 1));
    EXPECT_EQ(NSColor::systemPinkColor(), NSColor::colorWithWhite(16, 1));
    EXPECT_EQ(NSColor::windowBackgroundColor(), NSColor::colorWithWhite(17, 1));
}

TEST_F(SystemColors, SettingReplacesAllThatStoodBefore) {
    NSSystemColors::setSystemColors(greys(10));
    NSSystemColors onlyRed;
    onlyRed.red = NSColor::colorWithWhite(0.5, 1);
    NSSystemColors::setSystemColors(onlyRed);
    EXPECT_EQ(NSColor::systemRedColor(), NSColor::colorWithWhite(0.5, 1));
    EXPECT_EQ(NSColor::systemBlueColor(), std::nullopt);
    EXPECT_EQ(NSSystemColors::systemColors().pink, std::nullopt);
    EXPECT_EQ(NSColor::windowBackgroundColor().colorSpace().localizedName(), "sRGB IEC61966-2.1");
}

TEST_F(SystemColors, AReaderOnAnotherThreadSeesOneWholeSet) {
    constexpr int changes = 300000;
    std::atomic<bool> done = false;
    NSSystemColors::setSystemColors(greys(0));
    std::thread writer([&done] {
        for (int i = 1; i <= changes; ++i) {
            NSSystemColors::setSystemColors(greys(i * 10));
        }
        done = true;
    });
    bool whole = true;
    while (!done) {
        const NSSystemColors seen = NSSystemColors::systemColors();
        whole = whole && seen.windowBackground->components()[0] - seen.blue->components()[0] == 7;
    }
    writer.join();
    EXPECT_TRUE(whole);
    EXPECT_EQ(NSColor::systemBlueColor(), NSColor::colorWithWhite(3000000, 1));
}

} // namespace
