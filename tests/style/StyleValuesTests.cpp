// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

namespace zeltest {
namespace {

using namespace zel;

class StyleValuesTests : public StylingTests {
protected:
    const Style style = makeEmptyStyle();
};

TEST_F(StyleValuesTests, AValueIsReadBackUnderItsKey) {
    style->setValue(gray(0.5), "grayColor5");
    style->setValue(gray(0.75), "paperColor");
    EXPECT_EQ(style->valueForAttribute("grayColor5"), gray(0.5));
    EXPECT_EQ(style->effectiveValueForAttribute("grayColor5"), gray(0.5));
    EXPECT_EQ(style->valueForAttribute("paperColor"), gray(0.75));
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"), gray(0.75));
}

TEST_F(StyleValuesTests, AnAbsentValueIsNil) {
    EXPECT_EQ(style->valueForAttribute("grayColor5"), std::nullopt);
    EXPECT_EQ(style->effectiveValueForAttribute("grayColor5"), std::nullopt);
    EXPECT_EQ(style->valueForAttribute("neverWritten"), std::nullopt);
    EXPECT_EQ(style->effectiveValueForAttribute("neverWritten"), std::nullopt);
}

// Names are numbered in the order of their first use: those of one style lie anywhere among those
// of all styles, so that many share a place wherever they are kept by number.
TEST_F(StyleValuesTests, EveryNameIsFoundWhereverItWasFirstUsed) {
    const auto name = [](unsigned index) { return "name" + std::to_string(index); };
    constexpr unsigned count = 3000;
    const Style others = makeEmptyStyle();
    for (unsigned index = 0; index < count; ++index) {
        others->setValue(gray(0.5), name(index));
    }
    std::map<std::string, Value> written;
    for (unsigned i = 0; i < 300; ++i) {
        const std::string key = name((7 * i * i + 13 * i) % count);
        written[key] = NSNumber::numberWithUnsignedLong(i);
        style->setValue(written[key], key);
        ASSERT_EQ(style->effectiveValueForAttribute(key), written[key]) << key;
    }
    for (unsigned index = 0; index < count; ++index) {
        const auto found = written.find(name(index));
        EXPECT_EQ(style->effectiveValueForAttribute(name(index)),
                  found == written.end() ? std::nullopt : found->second)
            << name(index);
    }
    EXPECT_EQ(style->effectiveValues()->size(), written.size());
}

TEST_F(StyleValuesTests, ALaterWriteReplacesAnEarlierOne) {
    style->setValue(gray(0.25), "paperColor");
    style->setValue(NSNumber::numberWithUnsignedLong(7), "paperColor");
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"),
              Value(NSNumber::numberWithUnsignedLong(7)));
    style->setValue(gray(0.75), "paperColor");
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"), gray(0.75));
    EXPECT_EQ(style->effectiveValues()->size(), 1U);
}

TEST_F(StyleValuesTests, TheEmptyStringIsAKey) {
    EXPECT_EQ(style->effectiveValueForAttribute(""), std::nullopt);
    style->setValue(gray(0.5), "");
    EXPECT_EQ(style->valueForAttribute(""), gray(0.5));
    EXPECT_EQ(style->effectiveValueForAttribute(""), gray(0.5));
    EXPECT_TRUE(style->effectiveValues()->contains(""));
}

TEST_F(StyleValuesTests, KeysAreComparedByTheirWholeText) {
    style->setValue(gray(0.5), "paper");
    style->setValue(gray(0.25), std::string_view("paper\0color", 11));
    EXPECT_EQ(style->effectiveValueForAttribute("paper"), gray(0.5));
    EXPECT_EQ(style->effectiveValueForAttribute("Paper"), std::nullopt);
    EXPECT_EQ(style->effectiveValueForAttribute("paper "), std::nullopt);
    EXPECT_EQ(style->effectiveValueForAttribute(std::string_view("paper\0color", 11)), gray(0.25));
}

TEST_F(StyleValuesTests, EveryKindOfNumberIsReadBackAsItWasWritten) {
    const NSNumber numbers[] = {NSNumber::numberWithUnsignedLong(UINT64_MAX),
                                NSNumber::numberWithLong(-5), NSNumber::numberWithDouble(-0.25),
                                NSNumber::numberWithBool(true), NSNumber::numberWithBool(false)};
    for (const NSNumber& number : numbers) {
        for (const std::string_view key : {"styleType", "lineWidth"}) {
            style->setValue(Value(number), key);
            const Value read = style->effectiveValueForAttribute(key);
            ASSERT_TRUE(read && read->number());
            EXPECT_EQ(*read->number(), number);
            EXPECT_EQ(style->valueForAttribute(key), Value(number));
        }
    }
}

TEST_F(StyleValuesTests, AColourKeepsItsSpaceAndEveryComponent) {
    const NSColor color = NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5);
    for (const std::string_view key : {"inkColor", "blueColor"}) {
        style->setValue(Value(color), key);
        EXPECT_EQ(style->effectiveValueForAttribute(key), Value(color));
    }
    EXPECT_EQ(style->blueColor(), color);
}

TEST_F(StyleValuesTests, AnyOtherValueIsKeptAndNeverInterpreted) {
    const ZelAttributeValue font(std::string("Serif 12"));
    for (const std::string_view key : {"font", "blueColor"}) {
        style->setValue(font, key);
        const Value read = style->effectiveValueForAttribute(key);
        ASSERT_TRUE(read && read->as<std::string>());
        EXPECT_EQ(*read->as<std::string>(), "Serif 12");
        EXPECT_EQ(read, Value(font));
        EXPECT_EQ(style->effectiveValues()->at(std::string(key)), font);
    }
    EXPECT_EQ(style->blueColor(), std::nullopt);
}

TEST_F(StyleValuesTests, AValueOfAnotherKindReplacesAnUninterpretedOne) {
    style->setValue(ZelAttributeValue(std::string("Serif 12")), "font");
    ASSERT_TRUE(style->effectiveValueForAttribute("font"));
    style->setValue(gray(0.5), "font");
    EXPECT_EQ(style->effectiveValueForAttribute("font"), gray(0.5));
    style->setValue(ZelAttributeValue(std::string("Sans 9")), "font");
    EXPECT_EQ(*style->effectiveValueForAttribute("font")->as<std::string>(), "Sans 9");
}

TEST_F(StyleValuesTests, NilIsStoredAsTheNullMarkerAndReadsAsNoValue) {
    for (const std::string_view key : {"blueColor", "paperColor"}) {
        style->setValue(gray(0.5), key);
        style->setValue(std::nullopt, key);
        const Value own = style->valueForAttribute(key);
        ASSERT_TRUE(own);
        EXPECT_TRUE(own->isNull());
        EXPECT_EQ(style->effectiveValueForAttribute(key), std::nullopt);
        ASSERT_TRUE(style->effectiveValues()->contains(key));
        EXPECT_TRUE(style->effectiveValues()->find(key)->second.isNull());
    }
    EXPECT_EQ(style->blueColor(), std::nullopt);
}

TEST_F(StyleValuesTests, TheNullMarkerItselfCanBeWritten) {
    style->setValue(ZelAttributeValue(NSNull{}), "paperColor");
    EXPECT_TRUE(style->valueForAttribute("paperColor")->isNull());
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"), std::nullopt);
}

TEST_F(StyleValuesTests, ANilKeyReadsAsNoValue) {
    EXPECT_EQ(style->valueForAttribute(std::nullopt), std::nullopt);
    EXPECT_EQ(style->effectiveValueForAttribute(std::nullopt), std::nullopt);
}

TEST_F(StyleValuesTests, WritingToANilKeyRaisesAndLeavesEveryLockFree) {
    style->setValue(gray(0.5), "paperColor");
    const auto before = style->effectiveValues();
    EXPECT_THROW(style->setValue(gray(0.25), std::nullopt), ZelInvalidArgument);
    EXPECT_THROW(style->setValue(std::nullopt, std::nullopt), std::invalid_argument);
    EXPECT_TRUE(everyLockIsFree(style));
    EXPECT_EQ(style->effectiveValues(), before);
}

TEST_F(StyleValuesTests, TheMergedValuesOfARootAreItsOwnValuesByKey) {
    style->setValue(gray(0.5), "paperColor");
    style->setValue(gray(0.25), "blueColor");
    const ZelAttributeDictionary expected{{"blueColor", *gray(0.25)}, {"paperColor", *gray(0.5)}};
    EXPECT_EQ(*style->effectiveValues(), expected);
}

TEST_F(StyleValuesTests, TheMergedValuesAreTheSameSnapshotUntilAWriteDropsThem) {
    style->setValue(gray(0.5), "paperColor");
    const auto before = style->effectiveValues();
    EXPECT_EQ(style->effectiveValues(), before);
    style->setValue(gray(0.25), "paperColor");
    EXPECT_EQ(style->effectiveValues()->at("paperColor"), *gray(0.25));
    EXPECT_NE(style->effectiveValues(), before);
    EXPECT_EQ(before->at("paperColor"), *gray(0.5)) << "a snapshot never changes";
}

TEST_F(StyleValuesTests, AWriteMovesNoCounterAndTellsNobody) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto main = addStyle(domain->defaultScheme(), "main");
    const auto owner = makePlain();
    int handled = 0;
    int observed = 0;
    domain->registerChangeHandler([&](auto&&...) { ++handled; }, owner);
    main->addStyleUpdateObserver([&](auto&&...) { ++observed; }, owner, false);
    ASSERT_EQ(handled, 1);
    main->setValue(gray(0.5), "blueColor");
    main->setBackgroundColor(NSColor::colorWithWhite(0.25, 1));
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(observed, 0);
    EXPECT_EQ(main->seed(), 0U);
}

TEST_F(StyleValuesTests, SharedContentIsKeptAsItIsAndNilContentIsTheNullMarker) {
    const auto content = std::make_shared<const std::any>(5.5F);
    style->setValue(ZelAttributeValue(content), "leading");
    const Value read = style->effectiveValueForAttribute("leading");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->other(), content);
    EXPECT_EQ(read->as<int>(), nullptr);
    EXPECT_EQ(*read->as<float>(), 5.5F);
    EXPECT_TRUE(ZelAttributeValue(ZelAttributeValue::Other()).isNull());
    EXPECT_EQ(gray(0.5)->as<float>(), nullptr);
    const int* const nothing = nullptr;
    EXPECT_TRUE(ZelAttributeValue(nothing).isNull());
}

} // namespace
} // namespace zeltest
