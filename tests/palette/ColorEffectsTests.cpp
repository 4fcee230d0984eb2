// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Styling.h"

#include <ZelStyleKit/NSColor.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace {

using zel::NSColor;
using zel::NSColorSpace;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

void expectSRGB(const NSColor& color, double red, double green, double blue, double alpha) {
    EXPECT_EQ(&color.colorSpace(), &NSColorSpace::sRGBColorSpace());
    EXPECT_NEAR(color.components()[0], red, 1e-15);
    EXPECT_NEAR(color.components()[1], green, 1e-15);
    EXPECT_NEAR(color.components()[2], blue, 1e-15);
    EXPECT_NEAR(color.components()[3], alpha, 1e-15);
    EXPECT_EQ(color.components()[4], 0);
}

NSColor customColor(std::size_t count, const NSColor::Components& components) {
    return NSColor::colorWithColorSpace(NSColorSpace::customColorSpace("custom", count, false),
                                        components);
}

TEST(ColorEffects, EffectsHaveTheNumbersThatStylesStore) {
    EXPECT_EQ(zel::ZelStyleEffectNone, 0U);
    EXPECT_EQ(zel::ZelStyleEffectSelected, 1U);
    EXPECT_EQ(zel::ZelStyleEffectShade, 2U);
    EXPECT_EQ(zel::ZelStyleEffectHalfAlpha, 3U);
    EXPECT_EQ(zel::ZelStyleEffectDim, 4U);
}

TEST(ColorEffects, NoEffectIsTheReceiverItselfInItsOwnSpace) {
    for (const NSColor& color :
         {NSColor::colorWithSRGBRed(2, -1, 0.5, 3), NSColor::colorWithDeviceRed(2, -1, 0.5, 3),
          NSColor::colorWithWhite(0.12, 0.5), NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5),
          customColor(3, {50, 20, -30})}) {
        EXPECT_EQ(color.colorWithZelStyleEffect(0, false), color);
        EXPECT_EQ(color.colorWithZelStyleEffect(0, true), color);
        EXPECT_EQ(color.colorWithZelStyleEffect(0), color);
    }
}

TEST(ColorEffects, SelectedBrightensInDarkModeAndDarkensOtherwise) {
    const NSColor color = NSColor::colorWithSRGBRed(0.5, 0.6, 0.7, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(1, true), 0.55, 0.66, 0.77, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(1, false), 0.45, 0.54, 0.63, 0.8);
}

TEST(ColorEffects, SelectedWhiteStaysWhiteInDarkModeOnly) {
    const NSColor white = NSColor::colorWithSRGBRed(1, 1, 1, 1);
    EXPECT_EQ(white.colorWithZelStyleEffect(1, true), NSColor::colorWithSRGBRed(1, 1, 1, 1));
    EXPECT_EQ(white.colorWithZelStyleEffect(1, false), NSColor::colorWithSRGBRed(0.9, 0.9, 0.9, 1));
}

TEST(ColorEffects, SelectedBlackStaysBlack) {
    const NSColor black = NSColor::colorWithSRGBRed(0, 0, 0, 1);
    EXPECT_EQ(black.colorWithZelStyleEffect(1, true), black);
    EXPECT_EQ(black.colorWithZelStyleEffect(1, false), black);
}

TEST(ColorEffects, ShadeBrightensInDarkModeAndDarkensFurtherOtherwise) {
    const NSColor color = NSColor::colorWithSRGBRed(0.5, 0.6, 0.7, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(2, true), 0.55, 0.66, 0.77, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(2, false), 0.4, 0.48, 0.56, 0.8);
    EXPECT_EQ(NSColor::colorWithSRGBRed(0.5, 0.5, 0.5, 1).colorWithZelStyleEffect(2, false),
              NSColor::colorWithSRGBRed(0.4, 0.4, 0.4, 1));
}

TEST(ColorEffects, HalfAlphaTouchesAlphaAloneInBothModes) {
    const NSColor color = NSColor::colorWithSRGBRed(0.5, 0.6, 0.7, 0.6);
    EXPECT_EQ(color.colorWithZelStyleEffect(3, true),
              NSColor::colorWithSRGBRed(0.5, 0.6, 0.7, 0.3));
    EXPECT_EQ(color.colorWithZelStyleEffect(3, false),
              NSColor::colorWithSRGBRed(0.5, 0.6, 0.7, 0.3));
    expectSRGB(NSColor::colorWithWhite(0.12, 0.6).colorWithZelStyleEffect(3, false),
               0.09606665114320914970, 0.09606665114320914970, 0.09606665114320914970, 0.3);
}

TEST(ColorEffects, DimDarkensALittleInBothModes) {
    const NSColor color = NSColor::colorWithSRGBRed(0.2, 0.4, 0.6, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(4, true), 0.19, 0.38, 0.57, 0.8);
    expectSRGB(color.colorWithZelStyleEffect(4, false), 0.19, 0.38, 0.57, 0.8);
}

TEST(ColorEffects, AnUnknownEffectRebuildsTheColourAsSRGB) {
    const NSColor grey = NSColor::colorWithWhite(0.12, 0.5);
    for (const unsigned long effect : {5UL, 7UL, std::numeric_limits<unsigned long>::max()}) {
        expectSRGB(grey.colorWithZelStyleEffect(effect, true), 0.09606665114320914970,
                   0.09606665114320914970, 0.09606665114320914970, 0.5);
        expectSRGB(grey.colorWithZelStyleEffect(effect, false), 0.09606665114320914970,
                   0.09606665114320914970, 0.09606665114320914970, 0.5);
    }
    EXPECT_EQ(NSColor::colorWithSRGBRed(1.5, -0.5, 0.5, 2).colorWithZelStyleEffect(7, false),
              NSColor::colorWithSRGBRed(1, 0, 0.5, 1));
}

TEST(ColorEffects, EveryComponentIsClampedByItself) {
    const NSColor high = NSColor::colorWithSRGBRed(0.95, 2, 0.5, 3);
    expectSRGB(high.colorWithZelStyleEffect(1, true), 1, 1, 0.55, 1);
    const NSColor low = NSColor::colorWithSRGBRed(0.5, -0.5, -2, -1);
    expectSRGB(low.colorWithZelStyleEffect(1, false), 0.45, 0, 0, 0);
    expectSRGB(low.colorWithZelStyleEffect(3, false), 0.5, 0, 0, 0);
}

TEST(ColorEffects, AlphaIsHalvedBeforeItIsClamped) {
    EXPECT_EQ(NSColor::colorWithSRGBRed(0, 0, 0, 1.5).colorWithZelStyleEffect(3, false),
              NSColor::colorWithSRGBRed(0, 0, 0, 0.75));
}

TEST(ColorEffects, WhatIsNotANumberPassesScalingAndClamping) {
    const NSColor color = NSColor::colorWithSRGBRed(notANumber, 2, 0.5, notANumber);
    for (const unsigned long effect : {1UL, 2UL, 3UL, 4UL, 5UL}) {
        const NSColor::Components result = color.colorWithZelStyleEffect(effect, true).components();
        EXPECT_TRUE(std::isnan(result[0])) << effect;
        EXPECT_EQ(result[1], 1) << effect;
        EXPECT_FALSE(std::isnan(result[2])) << effect;
        EXPECT_TRUE(std::isnan(result[3])) << effect;
    }
    const NSColor others = NSColor::colorWithSRGBRed(0.5, notANumber, notANumber, 1);
    for (const unsigned long effect : {1UL, 2UL, 3UL, 4UL, 5UL}) {
        const NSColor::Components result =
            others.colorWithZelStyleEffect(effect, false).components();
        EXPECT_FALSE(std::isnan(result[0])) << effect;
        EXPECT_TRUE(std::isnan(result[1])) << effect;
        EXPECT_TRUE(std::isnan(result[2])) << effect;
        EXPECT_FALSE(std::isnan(result[3])) << effect;
    }
    const NSColor grey = NSColor::colorWithWhite(notANumber, 1).colorWithZelStyleEffect(1, false);
    EXPECT_TRUE(std::isnan(grey.components()[0]));
    EXPECT_EQ(grey.components()[3], 1);
}

TEST(ColorEffects, WhatIsInfiniteIsClamped) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const NSColor color = NSColor::colorWithSRGBRed(infinity, -infinity, 0.5, infinity);
    for (const bool dark : {false, true}) {
        EXPECT_EQ(color.colorWithZelStyleEffect(7, dark), NSColor::colorWithSRGBRed(1, 0, 0.5, 1));
    }
    expectSRGB(color.colorWithZelStyleEffect(1, false), 1, 0, 0.45, 1);
}

TEST(ColorEffects, AZeroKeepsItsSign) {
    const NSColor::Components result =
        NSColor::colorWithSRGBRed(-0.0, 0.0, 0.5, 1).colorWithZelStyleEffect(1, false).components();
    EXPECT_TRUE(std::signbit(result[0]));
    EXPECT_FALSE(std::signbit(result[1]));
}

TEST(ColorEffects, AGreyIsScaledInItsSRGBForm) {
    const NSColor grey = NSColor::colorWithWhite(0.12, 1);
    expectSRGB(grey.colorWithZelStyleEffect(1, true), 0.10567331625753006467,
               0.10567331625753006467, 0.10567331625753006467, 1);
    expectSRGB(grey.colorWithZelStyleEffect(1, false), 0.08645998602888823473,
               0.08645998602888823473, 0.08645998602888823473, 1);
    EXPECT_EQ(NSColor::whiteColor().colorWithZelStyleEffect(1, false),
              NSColor::colorWithSRGBRed(0.9, 0.9, 0.9, 1));
}

TEST(ColorEffects, ADeviceColourBecomesAnSRGBColour) {
    expectSRGB(NSColor::colorWithDeviceRed(0.5, 0.6, 0.7, 0.8).colorWithZelStyleEffect(1, false),
               0.45, 0.54, 0.63, 0.8);
}

TEST(ColorEffects, ACustomColourIsReadThroughItsOwnRGBForm) {
    const NSColorSpace& reversed = NSColorSpace::customColorSpace(
        "BGR", 3, false, [](const double* components, double* rgba) noexcept {
            rgba[0] = components[2];
            rgba[1] = components[1];
            rgba[2] = components[0];
            rgba[3] = 1;
        });
    expectSRGB(NSColor::colorWithColorSpace(reversed, {0.5, 0.6, 0.7}).colorWithZelStyleEffect(1),
               0.63, 0.54, 0.45, 1);
}

TEST(ColorEffects, AColourWithoutAnRGBFormBecomesTransparentBlack) {
    const NSColor transparentBlack = NSColor::colorWithSRGBRed(0, 0, 0, 0);
    for (const NSColor& color : {NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 1),
                                 customColor(3, {0.5, 0.5, 0.5}), customColor(0, {})}) {
        for (const unsigned long effect : {1UL, 2UL, 3UL, 4UL, 5UL, 7UL}) {
            EXPECT_EQ(color.colorWithZelStyleEffect(effect, false), transparentBlack) << effect;
            EXPECT_EQ(color.colorWithZelStyleEffect(effect, true), transparentBlack) << effect;
        }
    }
}

/// In the dark: the system is, and so is the current scheme.
class ColorEffectsInTheDark : public zeltest::StylingTests {
protected:
    ColorEffectsInTheDark() {
        makeSystemDark();
        zel::ZelStyleDomain::defaultDomain()->setSchemeFollowsSystem(true);
    }
};

TEST_F(ColorEffectsInTheDark, TheShortFormIsNeverDark) {
    const NSColor white = NSColor::colorWithSRGBRed(1, 1, 1, 1);
    EXPECT_EQ(white.colorWithZelStyleEffect(1), NSColor::colorWithSRGBRed(0.9, 0.9, 0.9, 1));
    EXPECT_EQ(white.colorWithZelStyleEffect(2), NSColor::colorWithSRGBRed(0.8, 0.8, 0.8, 1));
    EXPECT_EQ(white.colorWithZelStyleEffect(3), NSColor::colorWithSRGBRed(1, 1, 1, 0.5));
    EXPECT_EQ(white.colorWithZelStyleEffect(4), NSColor::colorWithSRGBRed(0.95, 0.95, 0.95, 1));
}

TEST(ColorEffects, AnEffectLeavesTheReceiverAsItWas) {
    const NSColor color = NSColor::colorWithWhite(0.5, 1);
    EXPECT_NE(color.colorWithZelStyleEffect(1, true), color);
    EXPECT_EQ(color, NSColor::colorWithWhite(0.5, 1));
}

TEST(ModifiableColor, OfADeviceColourIsThatColour) {
    const NSColor color = NSColor::colorWithDeviceRed(2, -0.2, 0.3, 0.4);
    EXPECT_EQ(color.modifiableColor(), color);
}

TEST(ModifiableColor, OfAnSRGBColourHasItsComponentsUnclamped) {
    EXPECT_EQ(NSColor::colorWithSRGBRed(2, -0.2, 0.3, 0.4).modifiableColor(),
              NSColor::colorWithDeviceRed(2, -0.2, 0.3, 0.4));
}

TEST(ModifiableColor, OfAGreyIsConvertedAndNotReadBlindly) {
    const auto color = NSColor::colorWithWhite(0.12, 0.7).modifiableColor();
    ASSERT_TRUE(color.has_value());
    EXPECT_EQ(&color->colorSpace(), &NSColorSpace::deviceRGBColorSpace());
    EXPECT_NEAR(color->components()[0], 0.09606665114320914970, 1e-15);
    EXPECT_NEAR(color->components()[1], 0.09606665114320914970, 1e-15);
    EXPECT_NEAR(color->components()[2], 0.09606665114320914970, 1e-15);
    EXPECT_EQ(color->components()[3], 0.7);
}

TEST(ModifiableColor, OfACustomColourWithAnRGBFormIsConverted) {
    const NSColorSpace& five = NSColorSpace::customColorSpace(
        "five", 5, true, [](const double* components, double* rgba) noexcept {
            rgba[0] = rgba[1] = rgba[2] = components[3];
            rgba[3] = components[4];
        });
    EXPECT_EQ(NSColor::colorWithColorSpace(five, {0.1, 0.2, 0.3, 0.4, 0.5}).modifiableColor(),
              NSColor::colorWithDeviceRed(0.4, 0.4, 0.4, 0.5));
}

TEST(ModifiableColor, ReadsOneComponentAsOpaqueGrey) {
    EXPECT_EQ(customColor(1, {0.3, 9, 9, 9, 9}).modifiableColor(),
              NSColor::colorWithDeviceRed(0.3, 0.3, 0.3, 1));
}

TEST(ModifiableColor, ReadsTwoComponentsAsGreyAndAlpha) {
    EXPECT_EQ(customColor(2, {0.3, 0.6, 9, 9, 9}).modifiableColor(),
              NSColor::colorWithDeviceRed(0.3, 0.3, 0.3, 0.6));
}

TEST(ModifiableColor, ReadsThreeComponentsAsOpaqueRGBWhateverTheyMean) {
    // Lightness, a and b of a Lab-like space.
    EXPECT_EQ(customColor(3, {50, 20, -30, 9, 9}).modifiableColor(),
              NSColor::colorWithDeviceRed(50, 20, -30, 1));
}

TEST(ModifiableColor, ReadsFourComponentsAsRGBAndAlphaWhateverTheyMean) {
    EXPECT_EQ(customColor(4, {0.1, 0.2, 0.3, 0.4, 9}).modifiableColor(),
              NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4));
}

TEST(ModifiableColor, TheCountDecidesAlsoWhereTheOnlyComponentIsAlpha) {
    const NSColorSpace& mask = NSColorSpace::customColorSpace("mask", 1, true);
    EXPECT_EQ(NSColor::colorWithColorSpace(mask, {0.3}).modifiableColor(),
              NSColor::colorWithDeviceRed(0.3, 0.3, 0.3, 1));
}

TEST(ModifiableColor, OfFiveComponentsWithoutAnRGBFormIsNothing) {
    EXPECT_EQ(NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5).modifiableColor(),
              std::nullopt);
    EXPECT_EQ(customColor(5, {0.1, 0.2, 0.3, 0.4, 0.5}).modifiableColor(), std::nullopt);
}

TEST(ModifiableColor, OfNoComponentsIsNothing) {
    EXPECT_EQ(customColor(0, {1, 1, 1, 1, 1}).modifiableColor(), std::nullopt);
}

} // namespace
