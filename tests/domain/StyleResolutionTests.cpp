// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// A domain whose light scheme is current; "cover" is of the light scheme, "title" of the default
/// one, "badge" of the dark one.
class StyleResolutionTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<ZelStyle> cover = addStyle(domain->lightScheme(), "cover");
    const std::shared_ptr<ZelStyle> title = addStyle(domain->defaultScheme(), "title");
    const std::shared_ptr<ZelStyle> badge = addStyle(domain->darkScheme(), "badge");
    const std::shared_ptr<Styled> window = makeStyled();
    const std::shared_ptr<Styled> panel = makeStyled(window);
    const std::shared_ptr<Styled> label = makeStyled(panel);

    StyleResolutionTests() { domain->setCurrentScheme(domain->lightScheme()); }
};

TEST_F(StyleResolutionTests, NilAndAnObjectWithoutIdentifiersHaveTheMainStyle) {
    EXPECT_EQ(domain->styleFor(nullptr), light);
    EXPECT_EQ(domain->styleFor(label), light);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(domain->styleFor(nullptr), dark);
    EXPECT_EQ(domain->styleFor(label), dark);
}

TEST_F(StyleResolutionTests, ADomainWithoutMainStyleGivesNil) {
    const auto empty = ZelStyleDomain::domainForIdentifier("empty");
    EXPECT_EQ(empty->styleFor(nullptr), nullptr);
    EXPECT_EQ(empty->styleFor(label), nullptr);
}

TEST_F(StyleResolutionTests, AnAncestorsSchemePinsTheMainStyleWhicheverSchemeIsCurrent) {
    window->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), dark);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(domain->styleFor(label), dark);
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(domain->styleFor(label), dark);
}

TEST_F(StyleResolutionTests, AStyleIdentifierIsLookedUpInTheCurrentSchemeThenTheDefaultOne) {
    label->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(domain->styleFor(label), cover);
    label->setCustomZelStyleIdentifier("title");
    EXPECT_EQ(domain->styleFor(label), title);
    label->setCustomZelStyleIdentifier("badge");
    EXPECT_EQ(domain->styleFor(label), light);
    label->setCustomZelStyleIdentifier("unheard-of");
    EXPECT_EQ(domain->styleFor(label), light);
}

TEST_F(StyleResolutionTests, APinnedSchemeThatLacksTheStyleGivesTheCurrentSchemesMainStyle) {
    label->setCustomZelStyleSchemeIdentifier("dark");
    panel->setCustomZelStyleIdentifier("cover"); // of the light scheme
    EXPECT_EQ(domain->styleFor(label), light);
    panel->setCustomZelStyleIdentifier("title"); // of the default scheme
    EXPECT_EQ(domain->styleFor(label), light);
}

TEST_F(StyleResolutionTests, SchemeAndStyleMayComeFromDifferentObjects) {
    label->setCustomZelStyleSchemeIdentifier("dark");
    window->setCustomZelStyleIdentifier("badge");
    EXPECT_EQ(domain->styleFor(label), badge);
    label->setCustomZelStyleSchemeIdentifier(std::nullopt);
    window->setCustomZelStyleIdentifier(std::nullopt);
    label->setCustomZelStyleIdentifier("badge");
    window->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), badge);
}

TEST_F(StyleResolutionTests, AnUnknownSchemeIsMadeEmptyAndTheMainStyleApplies) {
    label->setCustomZelStyleSchemeIdentifier("sepia");
    EXPECT_EQ(domain->styleFor(label), light);
    ASSERT_TRUE(hasScheme(*domain, "sepia"));
    EXPECT_TRUE(domain->schemeForIdentifier("sepia")->stylesByIdentifier().empty());
    const auto sepia = addStyle(domain->schemeForIdentifier("sepia"), "main");
    EXPECT_EQ(domain->styleFor(label), sepia);
}

TEST_F(StyleResolutionTests, TheNearestSchemeIdentifierWins) {
    window->setCustomZelStyleSchemeIdentifier("light");
    panel->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), dark);
    EXPECT_EQ(domain->styleFor(panel), dark);
    EXPECT_EQ(domain->styleFor(window), light);
    label->setCustomZelStyleSchemeIdentifier("default");
    EXPECT_EQ(domain->styleFor(label), plain);
}

TEST_F(StyleResolutionTests, EachIdentifierOfTheObjectsOwnWinsSeparately) {
    window->setCustomZelStyleIdentifier("cover");
    window->setCustomZelStyleSchemeIdentifier("light");
    label->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), light); // "cover" of "dark" isn't there: the main style
    label->setCustomZelStyleIdentifier("badge");
    EXPECT_EQ(domain->styleFor(label), badge);
    label->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(domain->styleFor(label), light); // "badge" of "light" isn't there either
    label->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(domain->styleFor(label), cover);
}

TEST_F(StyleResolutionTests, TheEmptyStringIsAnIdentifierThatHidesAnAncestors) {
    window->setCustomZelStyleIdentifier("cover");
    label->setCustomZelStyleIdentifier("");
    EXPECT_EQ(domain->styleFor(label), light);
    const auto nameless = addStyle(domain->lightScheme(), "");
    EXPECT_EQ(domain->styleFor(label), nameless);
    label->setCustomZelStyleSchemeIdentifier("");
    EXPECT_EQ(domain->styleFor(label), light);
    EXPECT_TRUE(hasScheme(*domain, ""));
}

TEST_F(StyleResolutionTests, ObjectsAboveBothIdentifiersAreNotAsked) {
    panel->setCustomZelStyleIdentifier("badge");
    label->setCustomZelStyleSchemeIdentifier("dark");
    for (const auto& each : {window, panel, label}) {
        each->parentRequests = 0;
    }
    EXPECT_EQ(domain->styleFor(label), badge);
    EXPECT_EQ(label->parentRequests, 1);
    EXPECT_EQ(panel->parentRequests, 0);
    EXPECT_EQ(window->parentRequests, 0);
}

TEST_F(StyleResolutionTests, NothingIsCachedBetweenTwoResolutions) {
    EXPECT_EQ(domain->styleFor(label), light);
    window->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(domain->styleFor(label), cover);
    panel->parent = nullptr;
    EXPECT_EQ(domain->styleFor(label), light);
    panel->parent = window;
    domain->lightScheme()->removeStyle(cover);
    EXPECT_EQ(domain->styleFor(label), light);
}

TEST_F(StyleResolutionTests, AParentThatIsNotStyleableEndsTheChain) {
    const auto host = makePlain();
    host->setCustomZelStyleSchemeIdentifier("dark");
    window->parent = host;
    window->setCustomZelStyleIdentifier("badge");
    EXPECT_EQ(domain->styleFor(label), badge); // its identifiers count, nothing above it does
    EXPECT_TRUE(ZelStyleDomain::isEqualOrChildOf(label, host));
}

TEST_F(StyleResolutionTests, AnotherDomainResolvesTheSameObjectToItsOwnStyles) {
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    const auto otherDark = addStyle(other->darkScheme(), "main");
    label->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), dark);
    EXPECT_EQ(other->styleFor(label), otherDark);
}

TEST_F(StyleResolutionTests, AnObjectIsEqualToItselfAndBelowItsAncestors) {
    EXPECT_TRUE(ZelStyleDomain::isEqualOrChildOf(label, label));
    EXPECT_TRUE(ZelStyleDomain::isEqualOrChildOf(label, panel));
    EXPECT_TRUE(ZelStyleDomain::isEqualOrChildOf(label, window));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(panel, label));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(window, label));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(makeStyled(panel), label));
}

TEST_F(StyleResolutionTests, NilIsBelowNothingAndNothingIsBelowNil) {
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(nullptr, label));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(label, nullptr));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(nullptr, nullptr));
}

TEST_F(StyleResolutionTests, AnObjectThatIsNotStyleableIsEqualToItselfAndBelowNothing) {
    const auto object = makePlain();
    EXPECT_TRUE(ZelStyleDomain::isEqualOrChildOf(object, object));
    EXPECT_FALSE(ZelStyleDomain::isEqualOrChildOf(object, window));
}

TEST_F(StyleResolutionTests, AStyleablesDomainIsTheOneThatItNames) {
    EXPECT_EQ(ZelStyleDomain::domainForStyleable(label), domain); // it names none
    label->domainIdentifier = "default";
    EXPECT_EQ(ZelStyleDomain::domainForStyleable(label), domain);
    label->domainIdentifier = "terminal";
    const auto made = ZelStyleDomain::domainForStyleable(label);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->domainIdentifier(), "terminal");
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("terminal"), made);
}

TEST_F(StyleResolutionTests, AnObjectThatIsNotStyleableHasNoDomain) {
    EXPECT_EQ(ZelStyleDomain::domainForStyleable(makePlain()), nullptr);
    EXPECT_EQ(ZelStyleDomain::domainForStyleable(nullptr), nullptr);
}

TEST_F(StyleResolutionTests, AListenerThatIsNotStyleableIsTakenToHaveTheMainStyle) {
    const auto object = makePlain();
    object->setCustomZelStyleIdentifier("cover"); // of no effect on what isn't styleable
    EXPECT_EQ(DomainInternals::_notifyStyleFor(*domain, object), light);
    EXPECT_EQ(DomainInternals::_notifyStyleFor(*domain, nullptr), light);
    label->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(DomainInternals::_notifyStyleFor(*domain, label), cover);
    const auto empty = ZelStyleDomain::domainForIdentifier("empty");
    EXPECT_EQ(DomainInternals::_notifyStyleFor(*empty, object), nullptr);
}

TEST_F(StyleResolutionTests, TheStyleForAStyleableIsThatOfItsOwnDomain) {
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    const auto otherCover = addStyle(other->defaultScheme(), "cover");
    label->setCustomZelStyleIdentifier("cover");
    EXPECT_EQ(ZelStyle::forStyleable(label), cover);
    label->domainIdentifier = "terminal";
    EXPECT_EQ(ZelStyle::forStyleable(label), otherCover);
    label->domainIdentifier = "never-made";
    EXPECT_EQ(ZelStyle::forStyleable(label), nullptr);
    EXPECT_EQ(ZelStyle::forStyleable(nullptr), light);
}

TEST_F(StyleResolutionTests, ResolvingMakesNoStyle) {
    label->setCustomZelStyleIdentifier("unheard-of");
    label->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(label), light);
    EXPECT_EQ(domain->darkScheme()->stylesByIdentifier().size(), 2U);
}

} // namespace
} // namespace zeltest
