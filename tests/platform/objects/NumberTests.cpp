// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSNumber.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace {

using zel::NSNumber;

TEST(Number, ANegativeLongWrapsWhereItIsReadAsUnsigned) {
    const auto number = NSNumber::numberWithLong(-1);
    EXPECT_EQ(number.unsignedLongValue(), 18446744073709551615U);
    EXPECT_EQ(number.longValue(), -1);
    EXPECT_EQ(number.doubleValue(), -1.0);
}

TEST(Number, ADoubleIsCutTowardsZeroAndHeldToTheRange) {
    const auto cut = [](double value) {
        return NSNumber::numberWithDouble(value).unsignedLongValue();
    };
    EXPECT_EQ(cut(2.9), 2U);
    EXPECT_EQ(cut(0.0), 0U);
    EXPECT_EQ(cut(-2.9), 0U);
    EXPECT_EQ(cut(std::nan("")), 0U);
    EXPECT_EQ(cut(1e30), 18446744073709551615U);
    EXPECT_EQ(cut(18446744073709551616.0), 18446744073709551615U);
    EXPECT_EQ(NSNumber::numberWithDouble(7.5).longValue(), 7);
    EXPECT_EQ(NSNumber::numberWithDouble(7.5).doubleValue(), 7.5);
}

TEST(Number, UnsignedOnesAndBooleansReadAsDoublesAndAsSigned) {
    EXPECT_EQ(NSNumber::numberWithUnsignedLong(3).doubleValue(), 3.0);
    EXPECT_EQ(NSNumber::numberWithUnsignedLong(3).longValue(), 3);
    EXPECT_EQ(NSNumber::numberWithBool(true).doubleValue(), 1.0);
    EXPECT_EQ(NSNumber::numberWithBool(false).unsignedLongValue(), 0U);
}

TEST(Number, ANumberIsTrueWhereItIsNotZero) {
    EXPECT_TRUE(NSNumber::numberWithLong(-1).boolValue());
    EXPECT_FALSE(NSNumber::numberWithLong(0).boolValue());
    EXPECT_TRUE(NSNumber::numberWithDouble(0.25).boolValue());
    EXPECT_FALSE(NSNumber::numberWithDouble(0.0).boolValue());
    EXPECT_TRUE(NSNumber::numberWithBool(true).boolValue());
    EXPECT_FALSE(NSNumber::numberWithBool(false).boolValue());
}

TEST(Number, NumbersOfOneKindAreEqualByValueAndThoseOfTwoNever) {
    EXPECT_EQ(NSNumber::numberWithLong(-4), NSNumber::numberWithLong(-4));
    EXPECT_NE(NSNumber::numberWithLong(-4), NSNumber::numberWithLong(4));
    EXPECT_EQ(NSNumber::numberWithDouble(0.5), NSNumber::numberWithDouble(0.5));
    EXPECT_NE(NSNumber::numberWithDouble(0.5), NSNumber::numberWithDouble(0.25));
    EXPECT_EQ(NSNumber::numberWithUnsignedLong(4), NSNumber::numberWithUnsignedLong(4));
    EXPECT_NE(NSNumber::numberWithUnsignedLong(4), NSNumber::numberWithUnsignedLong(5));
    EXPECT_NE(NSNumber::numberWithUnsignedLong(1), NSNumber::numberWithBool(true));
    EXPECT_NE(NSNumber::numberWithLong(4), NSNumber::numberWithDouble(4.0));
}

} // namespace
