// SPDX-License-Identifier: Apache-2.0
// Colour conversions against LittleCMS, an independent colour management library, in floating point
// and without its shortcuts, over evenly spaced colours that include both ends.
#include "platform/color/ColorConversion.h"
#include <ZelStyleKit/NSColor.h>

#include <gtest/gtest.h>
#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace {

using zel::NSColor;

constexpr double tolerance = 1e-4;
constexpr int levelCount = 10001;

struct Release {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using ToneCurve = std::unique_ptr<cmsToneCurve, Release>;

class Profile {
public:
    explicit Profile(cmsHPROFILE profile) : handle_(profile) {}
    ~Profile() { cmsCloseProfile(handle_); }
    Profile(const Profile&) = delete;
    Profile& operator=(const Profile&) = delete;
    [[nodiscard]] cmsHPROFILE get() const { return handle_; }

private:
    cmsHPROFILE handle_;
};

// From a profile's colours, in doubles, to encoded sRGB in doubles.
class ToSRGB {
public:
    ToSRGB(const Profile& source, cmsUInt32Number sourceFormat)
        : handle_(cmsCreateTransform(source.get(), sourceFormat, sRGB_.get(), TYPE_RGB_DBL,
                                     INTENT_RELATIVE_COLORIMETRIC,
                                     cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE)) {}
    ~ToSRGB() { cmsDeleteTransform(handle_); }
    ToSRGB(const ToSRGB&) = delete;
    ToSRGB& operator=(const ToSRGB&) = delete;

    std::array<double, 3> operator()(const double* color) const {
        std::array<double, 3> rgb{};
        cmsDoTransform(handle_, color, rgb.data(), 1);
        return rgb;
    }

private:
    Profile sRGB_{cmsCreate_sRGBProfile()};
    cmsHTRANSFORM handle_;
};

// The largest difference of red, green and blue.
double difference(const std::array<double, 3>& expected, const zel::ZelRGBA& actual) {
    return std::max({std::abs(expected[0] - actual.red), std::abs(expected[1] - actual.green),
                     std::abs(expected[2] - actual.blue)});
}

// Level number `index` of `count` levels that run evenly from 0 to 1.
double levelAt(int index, int count) {
    return static_cast<double>(index) / (count - 1);
}

// The largest difference between a function and a tone curve.
template <class Function>
double worstDifference(Function function, const cmsToneCurve* curve) {
    double worst = 0;
    for (int i = 0; i < levelCount; ++i) {
        const double level = levelAt(i, levelCount);
        const double expected = cmsEvalToneCurveFloat(curve, static_cast<float>(level));
        worst = std::max(worst, std::abs(function(level) - expected));
    }
    return worst;
}

ToneCurve sRGBToneCurve() {
    const std::array<double, 5> parameters = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    return ToneCurve(cmsBuildParametricToneCurve(nullptr, 4, parameters.data()));
}

TEST(ColorReference, GreysBecomeTheSameSRGBColours) {
    const ToneCurve gamma(cmsBuildGamma(nullptr, 2.2));
    const Profile gray(cmsCreateGrayProfile(cmsD50_xyY(), gamma.get()));
    const ToSRGB reference(gray, TYPE_GRAY_DBL);
    double worst = 0;
    for (int i = 0; i < levelCount; ++i) {
        const double level = levelAt(i, levelCount);
        const auto actual = NSColor::colorWithWhite(level, 1).sRGBComponents();
        ASSERT_TRUE(actual.has_value());
        worst = std::max(worst, difference(reference(&level), *actual));
    }
    EXPECT_LT(worst, tolerance);
}

TEST(ColorReference, DeviceColoursOfAnSRGBDisplayAreTheSameColours) {
    constexpr int steps = 22; // 22 × 22 × 22 = 10,648 colours
    const Profile display(cmsCreate_sRGBProfile());
    const ToSRGB reference(display, TYPE_RGB_DBL);
    double worst = 0;
    for (int i = 0; i < steps * steps * steps; ++i) {
        const std::array<double, 3> rgb = {levelAt(i / (steps * steps), steps),
                                           levelAt(i / steps % steps, steps),
                                           levelAt(i % steps, steps)};
        const auto actual = NSColor::colorWithDeviceRed(rgb[0], rgb[1], rgb[2], 1).sRGBComponents();
        ASSERT_TRUE(actual.has_value());
        worst = std::max(worst, difference(reference(rgb.data()), *actual));
    }
    EXPECT_LT(worst, tolerance);
}

TEST(ColorReference, TheSRGBTransferCurveAgreesInBothDirections) {
    const ToneCurve toLinear = sRGBToneCurve();
    const ToneCurve fromLinear(cmsReverseToneCurve(toLinear.get()));
    EXPECT_LT(worstDifference(zel::linearFromSRGB, toLinear.get()), tolerance);
    EXPECT_LT(worstDifference(zel::sRGBFromLinear, fromLinear.get()), tolerance);
}

TEST(ColorReference, TheGreyTransferCurveAgreesInBothDirections) {
    const ToneCurve toLinear(cmsBuildGamma(nullptr, 2.2));
    const ToneCurve fromLinear(cmsReverseToneCurve(toLinear.get()));
    EXPECT_LT(worstDifference(zel::linearFromGamma22, toLinear.get()), tolerance);
    EXPECT_LT(worstDifference(zel::gamma22FromLinear, fromLinear.get()), tolerance);
}

TEST(ColorReference, EachTransferCurveUndoesItsOther) {
    double worst = 0;
    for (int i = -levelCount; i < 2 * levelCount; ++i) {
        const double level = levelAt(i, levelCount);
        worst = std::max({worst, std::abs(zel::sRGBFromLinear(zel::linearFromSRGB(level)) - level),
                          std::abs(zel::gamma22FromLinear(zel::linearFromGamma22(level)) - level)});
    }
    // The standard's two knees are rounded: between them one side uses the power, the other the
    // straight piece.
    EXPECT_LT(worst, 1e-7);
}

TEST(ColorReference, TransferCurvesMapTheEndsExactly) {
    for (const double end : {0.0, 1.0}) {
        EXPECT_EQ(zel::linearFromSRGB(end), end);
        EXPECT_EQ(zel::sRGBFromLinear(end), end);
        EXPECT_EQ(zel::linearFromGamma22(end), end);
        EXPECT_EQ(zel::gamma22FromLinear(end), end);
    }
}

TEST(ColorReference, TransferCurvesMirrorNegativeValues) {
    EXPECT_NEAR(zel::linearFromSRGB(0.5), 0.21404114048223244240, 1e-15);
    EXPECT_NEAR(zel::linearFromSRGB(-0.5), -0.21404114048223244240, 1e-15);
    EXPECT_NEAR(zel::sRGBFromLinear(-0.2), -0.48452920448170694809, 1e-15);
    EXPECT_NEAR(zel::linearFromGamma22(-0.5), -0.21763764082403103478, 1e-15);
    EXPECT_NEAR(zel::gamma22FromLinear(-0.5), -0.72974005284072309793, 1e-15);
    EXPECT_TRUE(std::isnan(zel::linearFromSRGB(std::nan(""))));
    EXPECT_TRUE(std::isnan(zel::sRGBFromLinear(std::nan(""))));
    EXPECT_TRUE(std::isnan(zel::linearFromGamma22(std::nan(""))));
    EXPECT_TRUE(std::isnan(zel::gamma22FromLinear(std::nan(""))));
}

} // namespace
