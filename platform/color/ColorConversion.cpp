// SPDX-License-Identifier: Apache-2.0
#include "platform/color/ColorConversion.h"

#include <cmath>

namespace zel::inline v1 {
namespace {

constexpr double sRGBScale = 1.055;
constexpr double sRGBExponent = 2.4;
constexpr double sRGBLinearSlope = 12.92;
constexpr double sRGBEncodedKnee = 0.04045;
constexpr double sRGBLinearKnee = 0.0031308;
constexpr double grayGamma = 2.2;

// Deliberate: the standard's scale and offset (1.055 and 0.055) are written about the point (1, 1),
// where the usual form misses 1 by its last digit.
double linearFromSRGBMagnitude(double encoded) {
    return encoded <= sRGBEncodedKnee ? encoded / sRGBLinearSlope
                                      : std::pow(1 + (encoded - 1) / sRGBScale, sRGBExponent);
}

double sRGBFromLinearMagnitude(double linear) {
    return linear <= sRGBLinearKnee ? linear * sRGBLinearSlope
                                    : 1 + sRGBScale * (std::pow(linear, 1 / sRGBExponent) - 1);
}

// A power of a negative number has no value; the mirror image keeps the curve defined and monotone.
template <class Curve>
double mirrored(Curve curve, double value) {
    return value < 0 ? -curve(-value) : curve(value);
}

} // namespace

double linearFromSRGB(double encoded) noexcept {
    return mirrored(linearFromSRGBMagnitude, encoded);
}

double sRGBFromLinear(double linear) noexcept {
    return mirrored(sRGBFromLinearMagnitude, linear);
}

double linearFromGamma22(double encoded) noexcept {
    return mirrored([](double magnitude) { return std::pow(magnitude, grayGamma); }, encoded);
}

double gamma22FromLinear(double linear) noexcept {
    return mirrored([](double magnitude) { return std::pow(magnitude, 1 / grayGamma); }, linear);
}

} // namespace zel::inline v1
