// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

#include <limits>

namespace zeltest {
namespace {

using namespace zel;

class StyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
};

TEST_F(StyleTests, AStyleThatWasOnlyInitialisedHoldsNothing) {
    const auto style = makeEmptyStyle();
    EXPECT_TRUE(style->effectiveValues()->empty());
    EXPECT_EQ(style->seed(), 0U);
    EXPECT_EQ(style->domain(), nullptr);
    EXPECT_EQ(style->scheme(), nullptr);
    EXPECT_EQ(style->parentStyle(), nullptr);
    EXPECT_EQ(style->identifier(), std::nullopt);
}

TEST_F(StyleTests, AStyleMadeForASchemeHasItsDomainButStandsInNoScheme) {
    const auto scheme = domain->schemeForIdentifier("sepia");
    const auto style = alloc<ZelStyle>()->initWithIdentifier("main", scheme);
    EXPECT_EQ(style->identifier(), "main");
    EXPECT_EQ(style->domain(), domain);
    EXPECT_EQ(style->scheme(), nullptr);
    EXPECT_EQ(style->parentStyle(), nullptr);
    EXPECT_TRUE(scheme->stylesByIdentifier().empty());
    EXPECT_EQ(style->seed(), 0U);
}

TEST_F(StyleTests, AChildMadeForASchemeStandsInNoSchemeEither) {
    const auto scheme = domain->schemeForIdentifier("sepia");
    const auto parent = makeEmptyStyle();
    const auto child = alloc<ZelStyle>()->initWithIdentifier("quiet", scheme, parent);
    EXPECT_EQ(child->domain(), domain);
    EXPECT_EQ(child->scheme(), nullptr);
    EXPECT_EQ(child->parentStyle(), parent);
}

TEST_F(StyleTests, AStyleWithoutASchemeHasNoDomain) {
    const auto style = alloc<ZelStyle>()->initWithIdentifier("main", nullptr);
    EXPECT_EQ(style->domain(), nullptr);
}

TEST_F(StyleTests, AStyleMayHaveNoIdentifierOrAnEmptyOne) {
    EXPECT_EQ(alloc<ZelStyle>()->initWithIdentifier(std::nullopt, nullptr)->identifier(),
              std::nullopt);
    EXPECT_EQ(alloc<ZelStyle>()->initWithIdentifier("", nullptr)->identifier(), "");
}

TEST_F(StyleTests, AChildIsNotFilled) {
    const auto child = makeChild(makeEmptyStyle());
    EXPECT_TRUE(child->effectiveValues()->empty());
    EXPECT_EQ(child->valueForAttribute("blueColor"), std::nullopt);
}

/// A kind of style whose initialiser can fail, and leaves a mark where it doesn't.
class ParticularStyle : public ZelStyle {
public:
    bool fails = false;
    std::shared_ptr<NSObject> init() override {
        if (fails || !ZelStyle::init()) {
            return nullptr;
        }
        setValue(gray(0.25), "paperColor");
        return shared_from_this();
    }
};

TEST_F(StyleTests, ASubclassIsInitialisedByItsOwnInit) {
    const auto style = alloc<ParticularStyle>()->initWithIdentifier("main", nullptr);
    EXPECT_EQ(style->valueForAttribute("paperColor"), gray(0.25));
    EXPECT_EQ(style->effectiveValues()->size(), 56U);
}

TEST_F(StyleTests, AStyleWhoseInitFailsIsNil) {
    const auto style = alloc<ParticularStyle>();
    style->fails = true;
    EXPECT_EQ(style->initWithIdentifier("main", nullptr), nullptr);
    EXPECT_EQ(style->identifier(), std::nullopt);
    EXPECT_TRUE(style->effectiveValues()->empty());
}

TEST_F(StyleTests, AccessorsStoreAndDoNothingElse) {
    const auto style = addStyle(domain->defaultScheme(), "main");
    const auto before = style->effectiveValues();
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    const auto parent = makeEmptyStyle();
    style->setDomain(other);
    style->setScheme(other->darkScheme());
    style->setParentStyle(parent);
    style->setIdentifier("renamed");
    EXPECT_EQ(style->domain(), other);
    EXPECT_EQ(style->scheme(), other->darkScheme());
    EXPECT_EQ(style->parentStyle(), parent);
    EXPECT_EQ(style->identifier(), "renamed");
    EXPECT_EQ(style->effectiveValues(), before);
    EXPECT_EQ(style->seed(), 0U);
    EXPECT_EQ(other->darkScheme()->styleForIdentifier("renamed"), nullptr);
    style->setIdentifier(std::nullopt);
    EXPECT_EQ(style->identifier(), std::nullopt);
}

TEST_F(StyleTests, AStyleKeepsNeitherParentNorSchemeNorDomainAlive) {
    auto parent = makeEmptyStyle();
    auto ownDomain = alloc<ZelStyleDomain>()->initWithDomainIdentifier("brief");
    auto scheme = alloc<ZelStyleScheme>()->initWithIdentifier("sepia", ownDomain);
    const auto style = alloc<ZelStyle>()->initWithIdentifier("main", scheme, parent);
    style->setScheme(scheme);
    ASSERT_EQ(style->domain(), ownDomain);
    parent.reset();
    scheme.reset();
    ownDomain.reset();
    EXPECT_EQ(style->parentStyle(), nullptr);
    EXPECT_EQ(style->scheme(), nullptr);
    EXPECT_EQ(style->domain(), nullptr);
}

TEST_F(StyleTests, AStyleIsAChildOfItsAncestorsOnly) {
    const auto grandparent = makeEmptyStyle();
    const auto parent = makeChild(grandparent);
    const auto child = makeChild(parent);
    const auto sibling = makeChild(parent);
    EXPECT_TRUE(child->isChildOf(parent));
    EXPECT_TRUE(child->isChildOf(grandparent));
    EXPECT_FALSE(child->isChildOf(child));
    EXPECT_FALSE(child->isChildOf(sibling));
    EXPECT_FALSE(parent->isChildOf(child));
    EXPECT_FALSE(child->isChildOf(nullptr));
    EXPECT_FALSE(grandparent->isChildOf(nullptr));
}

TEST_F(StyleTests, AStyleWhoseParentHasEndedIsNobodysChild) {
    const auto grandparent = makeEmptyStyle();
    auto parent = makeChild(grandparent);
    const auto child = makeChild(parent);
    ASSERT_TRUE(child->isChildOf(grandparent));
    parent.reset();
    EXPECT_FALSE(child->isChildOf(grandparent));
}

TEST_F(StyleTests, TheSeedSumsTheCountersUpTheParents) {
    const auto grandparent = makeEmptyStyle();
    const auto parent = makeChild(grandparent);
    const auto child = makeChild(parent);
    for (int i = 0; i < 3; ++i) {
        grandparent->updateStyleWithChanges(nullptr);
    }
    for (int i = 0; i < 20; ++i) {
        parent->updateStyleWithChanges(nullptr);
    }
    for (int i = 0; i < 100; ++i) {
        child->updateStyleWithChanges(nullptr);
    }
    EXPECT_EQ(grandparent->seed(), 3U);
    EXPECT_EQ(parent->seed(), 23U);
    EXPECT_EQ(child->seed(), 123U);
}

TEST_F(StyleTests, TheSeedOfAStyleWhoseParentHasEndedIsItsOwnCounter) {
    auto parent = makeEmptyStyle();
    const auto child = makeChild(parent);
    parent->updateStyleWithChanges(nullptr);
    parent->updateStyleWithChanges(nullptr);
    child->updateStyleWithChanges(nullptr);
    ASSERT_EQ(child->seed(), 3U);
    parent.reset();
    EXPECT_EQ(child->seed(), 1U);
}

TEST_F(StyleTests, TheSeedWrapsAtSixtyFourBits) {
    const auto parent = makeEmptyStyle();
    const auto child = makeChild(parent);
    ZelStyleInternals::state(*parent).counter = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(child->seed(), 18446744073709551615U);
    child->updateStyleWithChanges(nullptr);
    child->updateStyleWithChanges(nullptr);
    EXPECT_EQ(child->seed(), 1U);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(parent->seed(), 0U);
}

TEST_F(StyleTests, TokensTellStylesApartForGood) {
    auto style = makeEmptyStyle();
    const ZelStyleToken token = style->token();
    EXPECT_FALSE(token.isNil());
    EXPECT_EQ(ZelStyleToken(style), token);
    EXPECT_TRUE(ZelStyleToken(std::shared_ptr<ZelStyle>()).isNil());
    for (int i = 0; i < 1000; ++i) { // addresses come again, tokens don't
        style.reset();
        style = makeEmptyStyle();
        EXPECT_NE(style->token(), token);
    }
}

} // namespace
} // namespace zeltest
