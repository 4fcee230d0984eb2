// SPDX-License-Identifier: Apache-2.0
#include "tests/palette/PaletteFixture.h"

namespace zeltest {
namespace {

using namespace zel;

class PaletteValueTests : public PaletteTests {};

TEST_F(PaletteValueTests, EveryDefaultColourIsTyped) {
    EXPECT_EQ(baseColors().size(), 21U);
    EXPECT_EQ(semanticColors().size(), 33U);
}

TEST_F(PaletteValueTests, TheDarkSchemeTakesTheDarkColourOfEveryAttribute) {
    const auto style = makeStyle("dark");
    expectDarkPalette(*style);
    EXPECT_EQ(style->styleType(), NSNumber::numberWithUnsignedLong(2));
    EXPECT_EQ(style->effectiveValues()->size(), 55U);
}

TEST_F(PaletteValueTests, TheLightSchemeTakesTheOtherColourOfEveryAttribute) {
    const auto style = makeStyle("light");
    expectOtherPalette(*style);
    EXPECT_EQ(style->styleType(), NSNumber::numberWithUnsignedLong(1));
    EXPECT_EQ(style->effectiveValues()->size(), 55U);
}

TEST_F(PaletteValueTests, TheDefaultSchemeIsCustomAndTakesTheLightPalette) {
    const auto style = makeStyle("default");
    expectOtherPalette(*style);
    EXPECT_EQ(style->styleType(), NSNumber::numberWithUnsignedLong(0));
    EXPECT_TRUE(style->isCustomStyle());
}

TEST_F(PaletteValueTests, AnyOtherSchemeIsCustomAndTakesTheLightPalette) {
    for (const std::string_view identifier : {"sepia", "Dark", "darker", "LIGHT", ""}) {
        const auto style = makeStyle(identifier);
        expectOtherPalette(*style);
        EXPECT_EQ(style->styleType(), NSNumber::numberWithUnsignedLong(0)) << identifier;
    }
}

TEST_F(PaletteValueTests, NoSchemeAndASchemeWithoutIdentifierTakeTheLightPalette) {
    for (const auto& style :
         {alloc<ZelStyle>()->initWithIdentifier("main", nullptr), makeStyle(std::nullopt)}) {
        expectOtherPalette(*style);
        EXPECT_EQ(style->styleType(), NSNumber::numberWithUnsignedLong(0));
    }
}

TEST_F(PaletteValueTests, TheFifthGreyIsTheSameInEveryScheme) {
    for (const std::string_view identifier : {"dark", "light", "default", "sepia"}) {
        EXPECT_EQ(makeStyle(identifier)->grayColor5(), NSColor::colorWithWhite(0.5, 1));
    }
}

// Deliberate: a mirrored ramp would end at 0.2 and 0.1.
TEST_F(PaletteValueTests, TheDarkRampIsNotTheLightOneMirrored) {
    const auto dark = makeStyle("dark");
    EXPECT_EQ(dark->grayColor8(), NSColor::colorWithWhite(0.22, 1));
    EXPECT_EQ(dark->grayColor9(), NSColor::colorWithWhite(0.12, 1));
}

TEST_F(PaletteValueTests, TheSelectedTableBackgroundStaysBlackInTheDarkAndIsDimmedElsewhere) {
    EXPECT_EQ(makeStyle("dark")->tableBackgroundSelectedColor(),
              NSColor::colorWithSRGBRed(0, 0, 0, 1));
    EXPECT_EQ(makeStyle("light")->tableBackgroundSelectedColor(),
              NSColor::colorWithSRGBRed(0.9, 0.9, 0.9, 1));
}

TEST_F(PaletteValueTests, TheSelectedOverlayInTheDarkIsTheBrightenedSRGBFormOfItsGrey) {
    const auto selected = makeStyle("dark")->overlayTableBackgroundSelectedColor();
    ASSERT_TRUE(selected);
    EXPECT_EQ(&selected->colorSpace(), &NSColorSpace::sRGBColorSpace());
    EXPECT_NEAR(selected->components()[0], 0.105673316257530, 1e-14);
    EXPECT_NEAR(selected->components()[1], 0.105673316257530, 1e-14);
    EXPECT_NEAR(selected->components()[2], 0.105673316257530, 1e-14);
    EXPECT_EQ(selected->components()[3], 1);
}

TEST_F(PaletteValueTests, TheSecondBackgroundIsThePlatformsWindowBackgroundUnlessDark) {
    const NSColor ivory = NSColor::colorWithDeviceRed(1, 1, 0.94, 1);
    NSSystemColors colors;
    colors.windowBackground = ivory;
    NSSystemColors::setSystemColors(colors);
    for (const std::string_view identifier : {"light", "default", "sepia"}) {
        EXPECT_EQ(makeStyle(identifier)->backgroundColorSecondary(), ivory);
    }
    EXPECT_EQ(makeStyle("dark")->backgroundColorSecondary(),
              NSColor::colorWithSRGBRed(28.0 / 255, 28.0 / 255, 28.0 / 255, 1));
}

TEST_F(PaletteValueTests, ThePlatformsHuesComeBeforeTheFallbacks) {
    const auto hue = [](double red) { return NSColor::colorWithDeviceRed(red, 0.3, 0.2, 0.9); };
    NSSystemColors colors;
    colors.blue = hue(0.1);
    colors.green = hue(0.2);
    colors.orange = hue(0.3);
    colors.purple = hue(0.4);
    colors.red = hue(0.5);
    colors.yellow = hue(0.6);
    colors.pink = hue(0.7);
    NSSystemColors::setSystemColors(colors);
    for (const std::string_view identifier : {"dark", "light"}) {
        const auto style = makeStyle(identifier);
        EXPECT_EQ(style->blueColor(), hue(0.1));
        EXPECT_EQ(style->greenColor(), hue(0.2));
        EXPECT_EQ(style->orangeColor(), hue(0.3));
        EXPECT_EQ(style->purpleColor(), hue(0.4));
        EXPECT_EQ(style->redColor(), hue(0.5));
        EXPECT_EQ(style->yellowColor(), hue(0.6));
        EXPECT_EQ(style->pinkColor(), hue(0.7));
        EXPECT_EQ(style->accentColor(), hue(0.1)) << "the accent is the platform's blue";
        EXPECT_EQ(style->controlColorDestructive(), hue(0.5));
    }
}

TEST_F(PaletteValueTests, EachHueThatThePlatformLacksFallsBackByItself) {
    NSSystemColors colors;
    colors.green = NSColor::colorWithDeviceRed(0, 1, 0, 1);
    NSSystemColors::setSystemColors(colors);
    const auto style = makeStyle("light");
    EXPECT_EQ(style->greenColor(), NSColor::colorWithDeviceRed(0, 1, 0, 1));
    expectColor(*style, "blueColor", sRGB(0, 0.47843137254901963, 1));
    expectColor(*style, "pinkColor", sRGB(1, 0.17647058823529413, 0.3333333333333333));
}

TEST_F(PaletteValueTests, NewSystemColoursReachNewStylesOnly) {
    const auto before = makeStyle("light");
    NSSystemColors colors;
    colors.blue = NSColor::colorWithDeviceRed(0, 0, 1, 1);
    NSSystemColors::setSystemColors(colors);
    expectColor(*before, "blueColor", sRGB(0, 0.47843137254901963, 1));
    EXPECT_EQ(makeStyle("light")->blueColor(), NSColor::colorWithDeviceRed(0, 0, 1, 1));
}

TEST_F(PaletteValueTests, ACopiedColourStaysWhenItsSourceChanges) {
    const auto style = makeStyle("light");
    style->setBlueColor(white(0.5));
    style->setAccentColor(white(0.25));
    style->setLabelColorTertiary(white(0.75));
    expectColor(*style, "controlColor", sRGB(0, 0.47843137254901963, 1));
    expectColor(*style, "separatorColor", level(0.24, 0.3));
}

TEST_F(PaletteValueTests, AChildOfADarkStyleInheritsItsPaletteInAnyScheme) {
    const auto dark = makeStyle("dark");
    const auto light = alloc<ZelStyleScheme>()->initWithIdentifier("light", nullptr);
    const auto child = alloc<ZelStyle>()->initWithIdentifier("child", light, dark);
    expectDarkPalette(*child);
    EXPECT_TRUE(child->isDarkStyle());
}

} // namespace
} // namespace zeltest
