// SPDX-License-Identifier: Apache-2.0
#include "tests/palette/AttributeRows.h"
#include "tests/support/Styling.h"

#include <set>

namespace zeltest {
namespace {

using namespace zel;

class AttributeKeyTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyle> style = [] {
        auto empty = alloc<ZelStyle>();
        empty->init();
        return empty;
    }();
    const NSColor first = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);
    const NSColor second = NSColor::colorWithWhite(0.5, 0.6);
};

TEST_F(AttributeKeyTests, FiftyFiveAttributesArePredefined) {
    std::set<std::string_view> keys{"styleType"};
    for (const AttributeRow& row : attributeRows()) {
        keys.insert(row.key);
    }
    EXPECT_EQ(keys.size(), 55U);
    EXPECT_EQ(ZelStyleAttributeCount, 55U);
}

TEST_F(AttributeKeyTests, EveryConstantHoldsItsKey) {
    EXPECT_EQ(ZelStyleAttributeKeyStyleType, "styleType");
    for (const AttributeRow& row : attributeRows()) {
        EXPECT_EQ(row.constant, row.key);
    }
}

TEST_F(AttributeKeyTests, EveryPlaceInTheListHasItsKey) {
    EXPECT_EQ(ZelStyleAttributeKeyOf(ZelStyleAttribute::StyleType), "styleType");
    for (const AttributeRow& row : attributeRows()) {
        EXPECT_EQ(ZelStyleAttributeKeyOf(row.attribute), row.key);
        EXPECT_EQ(ZelStyleAttributeForKey(row.key), row.attribute);
    }
    EXPECT_EQ(ZelStyleAttributeForKey("labelcolor"), std::nullopt);
}

// Deliberate spelling: it is part of the public vocabulary.
TEST_F(AttributeKeyTests, TheFourthLabelColourIsSpeltQuarternary) {
    EXPECT_EQ(ZelStyleAttributeKeyLabelColorQuarternary, "labelColorQuarternary");
    style->setLabelColorQuarternary(first);
    EXPECT_EQ(style->labelColorQuarternary(), first);
    EXPECT_EQ(style->effectiveValueForAttribute("labelColorQuaternary"), std::nullopt);
}

TEST_F(AttributeKeyTests, AStyleMadeWithDefaultsHasExactlyThePredefinedKeys) {
    const auto root = alloc<ZelStyle>()->initWithIdentifier("main", nullptr);
    const auto values = root->effectiveValues();
    EXPECT_EQ(values->size(), 55U);
    EXPECT_TRUE(values->contains("styleType"));
    for (const AttributeRow& row : attributeRows()) {
        EXPECT_TRUE(values->contains(row.key)) << row.key;
    }
}

TEST_F(AttributeKeyTests, EachWriteStoresUnderItsOwnKeyOnly) {
    for (const AttributeRow& row : attributeRows()) {
        const auto fresh = alloc<ZelStyle>();
        fresh->init();
        ((*fresh).*row.write)(first);
        const ZelAttributeDictionary expected{{std::string(row.key), ZelAttributeValue(first)}};
        EXPECT_EQ(*fresh->effectiveValues(), expected) << row.key;
    }
}

TEST_F(AttributeKeyTests, EachReadAnswersWhatStandsUnderItsKey) {
    for (const AttributeRow& row : attributeRows()) {
        EXPECT_EQ(((*style).*row.read)(), std::nullopt) << row.key;
        style->setValue(ZelAttributeValue(second), row.key);
        EXPECT_EQ(((*style).*row.read)(), second) << row.key;
        style->setValue(ZelAttributeValue(first), row.key);
        EXPECT_EQ(((*style).*row.read)(), first) << row.key;
        style->setValue(std::nullopt, row.key);
        EXPECT_EQ(((*style).*row.read)(), std::nullopt) << row.key;
    }
}

TEST_F(AttributeKeyTests, EachReadInheritsAndEachNilWriteHides) {
    const auto child = alloc<ZelStyle>()->initWithIdentifier("child", nullptr, style);
    for (const AttributeRow& row : attributeRows()) {
        ((*style).*row.write)(first);
        child->updateStyleWithChanges(nullptr);
        EXPECT_EQ(((*child).*row.read)(), first) << row.key;
        ((*child).*row.write)(second);
        EXPECT_EQ(((*child).*row.read)(), second) << row.key;
        ((*child).*row.write)(std::nullopt);
        EXPECT_EQ(((*child).*row.read)(), std::nullopt) << row.key;
        EXPECT_TRUE(child->valueForAttribute(row.key)->isNull()) << row.key;
    }
}

TEST_F(AttributeKeyTests, AColourAccessorHasNothingForAValueOfAnotherKind) {
    for (const AttributeRow& row : attributeRows()) {
        style->setValue(ZelAttributeValue(NSNumber::numberWithUnsignedLong(3)), row.key);
        EXPECT_EQ(((*style).*row.read)(), std::nullopt) << row.key;
        style->setValue(ZelAttributeValue(std::string("red")), row.key);
        EXPECT_EQ(((*style).*row.read)(), std::nullopt) << row.key;
    }
}

TEST_F(AttributeKeyTests, ATypedWriteDropsTheMergedValuesAndTellsNobody) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto main = addStyle(domain->defaultScheme(), "main");
    const auto owner = makePlain();
    int told = 0;
    domain->registerChangeHandler([&](auto&&...) { ++told; }, owner);
    main->addStyleUpdateObserver([&](auto&&...) { ++told; }, owner, false);
    told = 0;
    const auto merged = main->effectiveValues();
    main->setToolbarTintColor(first);
    main->setStyleType(NSNumber::numberWithUnsignedLong(2));
    EXPECT_NE(main->effectiveValues(), merged);
    EXPECT_EQ(told, 0);
    EXPECT_EQ(main->seed(), 0U);
}

} // namespace
} // namespace zeltest
