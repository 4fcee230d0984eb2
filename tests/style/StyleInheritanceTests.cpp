// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Watchdog.h"

#include <atomic>

namespace zeltest {
namespace {

using namespace zel;

class StyleInheritanceTests : public StylingTests {
protected:
    Style parent = makeEmptyStyle();
    const Style child = makeChild(parent);
};

TEST_F(StyleInheritanceTests, AnOwnValueOverridesTheInheritedOne) {
    parent->setValue(gray(0.5), "blueColor");
    parent->setValue(gray(0.25), "paperColor");
    EXPECT_EQ(child->valueForAttribute("blueColor"), std::nullopt) << "own values only";
    EXPECT_EQ(child->valueForAttribute("paperColor"), std::nullopt) << "own values only";
    child->setValue(gray(0.75), "blueColor");
    const ZelAttributeDictionary expected{{"blueColor", *gray(0.75)}, {"paperColor", *gray(0.25)}};
    EXPECT_EQ(*child->effectiveValues(), expected);
    EXPECT_EQ(parent->effectiveValueForAttribute("blueColor"), gray(0.5));
}

TEST_F(StyleInheritanceTests, AGrandchildMergesEveryAncestor) {
    const auto grandchild = makeChild(child);
    parent->setValue(gray(0.1), "a");
    parent->setValue(gray(0.2), "b");
    parent->setValue(gray(0.3), "c");
    child->setValue(gray(0.4), "b");
    child->setValue(gray(0.5), "c");
    grandchild->setValue(gray(0.6), "c");
    const ZelAttributeDictionary expected{{"a", *gray(0.1)}, {"b", *gray(0.4)}, {"c", *gray(0.6)}};
    EXPECT_EQ(*grandchild->effectiveValues(), expected);
}

TEST_F(StyleInheritanceTests, ANullInAChildRemovesTheInheritedKey) {
    for (const std::string_view key : {"blueColor", "paperColor", "font"}) {
        parent->setValue(ZelAttributeValue(std::string("any")), key);
        child->setValue(std::nullopt, key);
        EXPECT_TRUE(child->valueForAttribute(key)->isNull());
        EXPECT_EQ(child->effectiveValueForAttribute(key), std::nullopt);
        EXPECT_FALSE(child->effectiveValues()->contains(key));
    }
}

TEST_F(StyleInheritanceTests, ANullInAChildIsMissingFromItsChildrenToo) {
    const auto grandchild = makeChild(child);
    parent->setValue(gray(0.5), "blueColor");
    child->setValue(std::nullopt, "blueColor");
    EXPECT_FALSE(grandchild->effectiveValues()->contains("blueColor"));
    grandchild->setValue(gray(0.75), "blueColor");
    EXPECT_EQ(grandchild->effectiveValueForAttribute("blueColor"), gray(0.75));
}

TEST_F(StyleInheritanceTests, ANullThatHidesNothingIsNotMergedEither) {
    child->setValue(std::nullopt, "paperColor");
    EXPECT_TRUE(child->effectiveValues()->empty());
}

TEST_F(StyleInheritanceTests, ARootsNullMarkerIsMergedIntoItsChild) {
    for (const std::string_view key : {"blueColor", "paperColor"}) {
        parent->setValue(std::nullopt, key);
        child->setValue(gray(0.5), "other");
        ASSERT_TRUE(child->effectiveValues()->contains(key));
        EXPECT_TRUE(child->effectiveValues()->find(key)->second.isNull());
        EXPECT_EQ(child->effectiveValueForAttribute(key), std::nullopt);
    }
}

TEST_F(StyleInheritanceTests, MergedValuesStayWhenOnlyTheParentIsWrittenTo) {
    parent->setValue(gray(0.5), "blueColor");
    const auto merged = child->effectiveValues();
    parent->setValue(gray(0.75), "blueColor");
    parent->setValue(gray(0.25), "paperColor");
    EXPECT_EQ(child->effectiveValues(), merged) << "merged once";
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    EXPECT_EQ(child->effectiveValueForAttribute("paperColor"), std::nullopt);
    EXPECT_EQ(parent->effectiveValueForAttribute("blueColor"), gray(0.75));
}

TEST_F(StyleInheritanceTests, AReadThatFindsNothingMergesTheValuesToo) {
    parent->setValue(gray(0.5), "blueColor");
    EXPECT_EQ(child->effectiveValueForAttribute("a key that nobody has written"), std::nullopt);
    parent->setValue(gray(0.75), "blueColor");
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5)) << "merged by the read";
    child->setValue(gray(0.25), "paperColor");
    EXPECT_EQ(child->effectiveValueForAttribute(std::nullopt), std::nullopt);
    parent->setValue(gray(0.5), "blueColor");
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.75)) << "under nil as well";
}

TEST_F(StyleInheritanceTests, AStyleBetweenServesItsOwnMergedValuesToItsChildren) {
    const auto grandchild = makeChild(child);
    parent->setValue(gray(0.5), "blueColor");
    ASSERT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    parent->setValue(gray(0.75), "blueColor");
    EXPECT_EQ(grandchild->effectiveValueForAttribute("blueColor"), gray(0.5));
}

TEST_F(StyleInheritanceTests, ReadingAChildMergesItsParentOnTheWay) {
    parent->setValue(gray(0.5), "blueColor");
    ASSERT_FALSE(hasComputedValues(parent));
    ASSERT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    EXPECT_TRUE(hasComputedValues(parent));
}

TEST_F(StyleInheritanceTests, GettingAParentDropsNothing) {
    const auto style = makeEmptyStyle();
    style->setValue(std::nullopt, "paperColor");
    const auto merged = style->effectiveValues();
    parent->setValue(gray(0.5), "blueColor");
    style->setParentStyle(parent);
    EXPECT_EQ(style->effectiveValues(), merged);
    EXPECT_EQ(style->effectiveValueForAttribute("blueColor"), std::nullopt);
    style->updateStyleWithChanges(nullptr);
    const ZelAttributeDictionary expected{{"blueColor", *gray(0.5)}};
    EXPECT_EQ(*style->effectiveValues(), expected);
}

TEST_F(StyleInheritanceTests, AParentThatCameBetweenAWriteAndTheNextReadIsMerged) {
    const auto style = makeEmptyStyle();
    style->setValue(gray(0.25), "paperColor");
    ASSERT_EQ(style->effectiveValueForAttribute("paperColor"), gray(0.25));
    parent->setValue(gray(0.5), "blueColor");
    style->setValue(gray(0.75), "paperColor");
    style->setParentStyle(parent);
    EXPECT_EQ(style->effectiveValueForAttribute("paperColor"), gray(0.75));
    EXPECT_EQ(style->effectiveValueForAttribute("blueColor"), gray(0.5));
}

TEST_F(StyleInheritanceTests, ChangingTheParentDropsNothing) {
    parent->setValue(gray(0.5), "blueColor");
    ASSERT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    const auto other = makeEmptyStyle();
    other->setValue(gray(0.75), "blueColor");
    child->setParentStyle(other);
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    child->setValue(std::nullopt, "paperColor");
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.75));
}

TEST_F(StyleInheritanceTests, AStyleWhoseParentHasEndedIsAsItWasUntilItMergesAsARoot) {
    parent->setValue(gray(0.5), "blueColor");
    child->setValue(std::nullopt, "paperColor");
    ASSERT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5));
    parent.reset();
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), gray(0.5)) << "merged before";
    child->updateStyleWithChanges(nullptr);
    EXPECT_EQ(child->effectiveValueForAttribute("blueColor"), std::nullopt);
    const ZelAttributeDictionary expected{{"paperColor", ZelAttributeValue(NSNull{})}};
    EXPECT_EQ(*child->effectiveValues(), expected) << "a root's null markers are its values";
}

TEST_F(StyleInheritanceTests, UninterpretedValuesAreInheritedByIdentity) {
    const ZelAttributeValue font(std::string("Serif 12"));
    parent->setValue(font, "font");
    EXPECT_EQ(child->effectiveValueForAttribute("font"), Value(font));
    child->setValue(gray(0.5), "font");
    EXPECT_EQ(child->effectiveValueForAttribute("font"), gray(0.5));
}

TEST_F(StyleInheritanceTests, AChildKeepsNoUninterpretedValueThatItsNullMarkerHides) {
    auto content = std::make_shared<const std::any>(std::string("Serif 12"));
    const std::weak_ptr<const std::any> weak = content;
    parent->setValue(ZelAttributeValue(std::exchange(content, nullptr)), "font");
    child->setValue(std::nullopt, "font");
    EXPECT_EQ(child->effectiveValueForAttribute("font"), std::nullopt);
    parent->setValue(gray(0.5), "font"); // lets go of the content, and child has it no more
    EXPECT_TRUE(weak.expired());
}

TEST_F(StyleInheritanceTests, NoKeyOfAFormerParentIsLeftHoweverManyItHad) {
    for (int count = 1; count <= 40; ++count) {
        const auto former = makeEmptyStyle();
        const auto moved = makeChild(former);
        const auto orphan = makeChild(former);
        for (int i = 0; i < count; ++i) {
            former->setValue(gray(0.5), "former" + std::to_string(i));
        }
        ASSERT_EQ(moved->effectiveValues()->size(), static_cast<std::size_t>(count));
        ASSERT_EQ(orphan->effectiveValues()->size(), static_cast<std::size_t>(count));
        moved->setParentStyle(parent);
        orphan->setParentStyle(nullptr);
        for (const Style& each : {moved, orphan}) {
            each->setValue(gray(0.25), "own");
            const ZelAttributeDictionary expected{{"own", *gray(0.25)}};
            EXPECT_EQ(*each->effectiveValues(), expected) << count;
            for (int i = 0; i < count; ++i) {
                EXPECT_EQ(each->effectiveValueForAttribute("former" + std::to_string(i)),
                          std::nullopt)
                    << count;
            }
        }
    }
}

TEST_F(StyleInheritanceTests, ParentsMayBeTurnedRoundWhileOthersReadBoth) {
    const Style other = makeEmptyStyle();
    std::atomic<bool> turning{true};
    const auto read = [&] {
        do {
            for (const auto& style : {child, other}) {
                style->setValue(NSColor::blackColor(), "sky"); // to be merged anew
                (void)style->effectiveValues();
            }
        } while (turning);
    };
    runAtOnce({[&] {
                   for (int i = 0; i < 12'000; ++i) {
                       child->setParentStyle(other);
                       child->setParentStyle(nullptr);
                       other->setParentStyle(child);
                       other->setParentStyle(nullptr);
                   }
                   turning = false;
               },
               read, read});
    EXPECT_TRUE(child->effectiveValues()->contains("sky"));
}

} // namespace
} // namespace zeltest
