// SPDX-License-Identifier: Apache-2.0
#include "tests/palette/PaletteFixture.h"

namespace zeltest {
namespace {

using namespace zel;

class StyleTypeTests : public PaletteTests {
protected:
    const Style style = [] {
        auto empty = alloc<ZelStyle>();
        empty->init();
        return empty;
    }();

    void expectType(bool dark, bool light, bool custom) const {
        EXPECT_EQ(style->isDarkStyle(), dark);
        EXPECT_EQ(style->isLightStyle(), light);
        EXPECT_EQ(style->isCustomStyle(), custom);
    }
};

TEST_F(StyleTypeTests, TypesHaveTheNumbersThatStylesStore) {
    EXPECT_EQ(ZelStyleTypeCustom, 0U);
    EXPECT_EQ(ZelStyleTypeLight, 1U);
    EXPECT_EQ(ZelStyleTypeDark, 2U);
}

TEST_F(StyleTypeTests, AStyleWithoutATypeIsCustom) {
    EXPECT_EQ(style->styleType(), std::nullopt);
    expectType(false, false, true);
}

TEST_F(StyleTypeTests, TheTypeIsReadFromTheNumber) {
    style->setStyleType(NSNumber::numberWithUnsignedLong(2));
    expectType(true, false, false);
    style->setStyleType(NSNumber::numberWithUnsignedLong(1));
    expectType(false, true, false);
    style->setStyleType(NSNumber::numberWithUnsignedLong(0));
    expectType(false, false, true);
    style->setStyleType(NSNumber::numberWithUnsignedLong(3));
    expectType(false, false, false);
    style->setStyleType(std::nullopt);
    expectType(false, false, true);
}

TEST_F(StyleTypeTests, ANumberOfAnotherKindIsReadAsAnUnsignedOne) {
    style->setStyleType(NSNumber::numberWithLong(2));
    expectType(true, false, false);
    style->setStyleType(NSNumber::numberWithDouble(1.75));
    expectType(false, true, false);
    style->setStyleType(NSNumber::numberWithBool(true));
    expectType(false, true, false);
    style->setStyleType(NSNumber::numberWithLong(-1));
    expectType(false, false, false);
}

TEST_F(StyleTypeTests, AllBitsOfTheNumberCount) {
    for (const std::uint64_t low : {0U, 1U, 2U}) {
        style->setStyleType(NSNumber::numberWithUnsignedLong((std::uint64_t{1} << 32) + low));
        expectType(false, false, false);
    }
}

TEST_F(StyleTypeTests, ATypedWriteStoresTheNumberAsItIsUnderItsKeyAlone) {
    for (const NSNumber& number :
         {NSNumber::numberWithUnsignedLong(7), NSNumber::numberWithLong(-1),
          NSNumber::numberWithDouble(1.75), NSNumber::numberWithBool(true)}) {
        style->setStyleType(number);
        EXPECT_EQ(style->styleType(), number);
        EXPECT_EQ(style->valueForAttribute("styleType"), ZelAttributeValue(number));
        EXPECT_EQ(style->effectiveValues()->size(), 1U);
    }
    style->setStyleType(std::nullopt);
    const auto stored = style->valueForAttribute("styleType");
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->isNull());
}

TEST_F(StyleTypeTests, ATypeThatIsNoNumberReadsAsCustom) {
    style->setValue(ZelAttributeValue(white(0.5)), "styleType");
    EXPECT_EQ(style->styleType(), std::nullopt);
    expectType(false, false, true);
    style->setValue(ZelAttributeValue(std::string("2")), "styleType");
    EXPECT_EQ(style->styleType(), std::nullopt);
    expectType(false, false, true);
}

TEST_F(StyleTypeTests, TheTypeIsStoredAsAnUnsignedNumber) {
    const auto dark = makeStyle("dark")->valueForAttribute("styleType");
    ASSERT_TRUE(dark && dark->number());
    EXPECT_EQ(dark->number()->kind(), NSNumber::Kind::UnsignedLong);
    EXPECT_EQ(dark->number()->unsignedLongValue(), 2U);
}

TEST_F(StyleTypeTests, EachSchemeHasItsType) {
    EXPECT_TRUE(makeStyle("dark")->isDarkStyle());
    EXPECT_FALSE(makeStyle("dark")->isLightStyle());
    EXPECT_FALSE(makeStyle("dark")->isCustomStyle());
    EXPECT_TRUE(makeStyle("light")->isLightStyle());
    EXPECT_FALSE(makeStyle("light")->isCustomStyle());
    EXPECT_TRUE(makeStyle("default")->isCustomStyle());
    EXPECT_FALSE(makeStyle("default")->isLightStyle());
    EXPECT_TRUE(makeStyle(std::nullopt)->isCustomStyle());
}

TEST_F(StyleTypeTests, AChildInheritsItsParentsType) {
    const auto dark = makeStyle("dark");
    const auto child = alloc<ZelStyle>()->initWithIdentifier("child", nullptr, dark);
    EXPECT_TRUE(child->isDarkStyle());
    child->setStyleType(NSNumber::numberWithUnsignedLong(1));
    EXPECT_TRUE(child->isLightStyle());
    child->setStyleType(std::nullopt);
    EXPECT_TRUE(child->isCustomStyle());
    EXPECT_TRUE(dark->isDarkStyle());
}

} // namespace
} // namespace zeltest
