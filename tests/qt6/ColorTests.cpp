// SPDX-License-Identifier: Apache-2.0
#include "tests/qt6/QtFixture.h"

#include <ZelStyleKit/ZelQtColor.h>

#include <limits>

namespace {

using zel::NSColor;
using zel::ZelColorWithQColor;
using zel::ZelQColorWithColor;

TEST(QtColorTests, AnSRGBColorKeepsItsComponents) {
    EXPECT_EQ(ZelQColorWithColor(NSColor::colorWithSRGBRed(0, 122.0 / 255, 1, 0.5)).rgba(),
              qRgba(0, 122, 255, 128));
}

TEST(QtColorTests, AGreyGoesThroughSRGB) {
    // Level 0.25 of gamma 2.2 is 0.0474 of light; sRGB encodes that as 61 of 255, not as 64.
    EXPECT_EQ(ZelQColorWithColor(NSColor::colorWithWhite(0.25, 1)).rgba(), qRgb(61, 61, 61));
    EXPECT_EQ(ZelQColorWithColor(NSColor::whiteColor()).rgba(), qRgb(255, 255, 255));
    EXPECT_EQ(ZelQColorWithColor(NSColor::clearColor()).rgba(), qRgba(0, 0, 0, 0));
}

// Qt cuts what lies between two of the 256 steps that it paints in.
TEST(QtColorTests, AComponentIsTheNearestOfThoseThatQtPaints) {
    EXPECT_EQ(ZelQColorWithColor(NSColor::colorWithSRGBRed(60.6 / 255, 60.4 / 255, 0, 1)).rgba(),
              qRgb(61, 60, 0));
}

TEST(QtColorTests, ComponentsOutsideTheirRangeAreHeldToIt) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ZelQColorWithColor(NSColor::colorWithSRGBRed(1.5, -1, nan, 2)).rgba(),
              qRgba(255, 0, 0, 255));
}

TEST(QtColorTests, WhatHasNoRGBFormIsInvalid) {
    EXPECT_FALSE(ZelQColorWithColor(std::nullopt).isValid());
    EXPECT_FALSE(ZelQColorWithColor(NSColor::colorWithDeviceCyan(0, 0, 0, 1, 1)).isValid());
}

TEST(QtColorTests, AQColorBecomesAnSRGBColor) {
    const auto color = ZelColorWithQColor(QColor(51, 102, 255, 204));
    ASSERT_TRUE(color);
    EXPECT_EQ(&color->colorSpace(), &zel::NSColorSpace::sRGBColorSpace());
    EXPECT_NEAR(color->components()[0], 0.2, 1e-4);
    EXPECT_NEAR(color->components()[1], 0.4, 1e-4);
    EXPECT_NEAR(color->components()[2], 1.0, 1e-4);
    EXPECT_NEAR(color->components()[3], 0.8, 1e-4);
}

TEST(QtColorTests, AQColorOfAnotherModelIsTheSameColor) {
    const auto color = ZelColorWithQColor(QColor::fromHsv(120, 255, 255));
    ASSERT_TRUE(color);
    EXPECT_EQ(ZelQColorWithColor(color).rgba(), qRgb(0, 255, 0));
}

TEST(QtColorTests, AnInvalidQColorIsNoColor) {
    EXPECT_EQ(ZelColorWithQColor(QColor()), std::nullopt);
}

} // namespace
