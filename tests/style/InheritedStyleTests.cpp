// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

#include <utility>
#include <vector>

namespace zeltest {
namespace {

using namespace zel;

class InheritedStyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    const std::shared_ptr<ZelStyleScheme> scheme = domain->defaultScheme();
    Style parent = addStyle(scheme, "main");
    std::vector<std::pair<Style, Style>> computed; // parent and child of each call

    /// Gives the child its parent's blue as its accent.
    ZelStyle::InheritedChanges copyBlue() {
        return [this](const Style& from, const Style& child) {
            computed.emplace_back(from, child);
            child->setAccentColor(from ? from->blueColor() : std::nullopt);
        };
    }
    static ZelStyle::Changes makeBlue(double level) {
        return [level](const Style& style) {
            style->setBlueColor(NSColor::colorWithWhite(level, 1));
            return true;
        };
    }
};

TEST_F(InheritedStyleTests, TheChildHoldsItsComputedValuesAtOnceAndNothingIsAnnounced) {
    int delivered = 0;
    const auto owner = makePlain();
    domain->registerChangeHandler([&](auto&&...) { ++delivered; }, owner);
    delivered = 0;
    parent->setBlueColor(NSColor::colorWithWhite(0.5, 1));
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    EXPECT_EQ(child->valueForAttribute("accentColor"), gray(0.5));
    EXPECT_EQ(child->accentColor(), NSColor::colorWithWhite(0.5, 1));
    EXPECT_EQ(computed.size(), 1U);
    EXPECT_EQ(computed.front(), std::pair(parent, child));
    EXPECT_EQ(localCounter(child), 0U);
    EXPECT_EQ(child->seed(), 0U);
    EXPECT_EQ(delivered, 0);
}

TEST_F(InheritedStyleTests, AnAcceptedUpdateOfTheParentComputesTheChildAgain) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    ASSERT_TRUE(child->accentColor());
    parent->updateStyleWithChanges(makeBlue(0.25));
    EXPECT_EQ(child->accentColor(), NSColor::colorWithWhite(0.25, 1));
    EXPECT_EQ(child->blueColor(), NSColor::colorWithWhite(0.25, 1)) << "merged afresh";
    EXPECT_EQ(computed.size(), 2U);
    EXPECT_EQ(localCounter(child), 1U);
    EXPECT_EQ(localCounter(parent), 1U);
    EXPECT_EQ(child->seed(), 2U);
}

TEST_F(InheritedStyleTests, GrandchildrenFollowThroughTheChild) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    const auto grandchild = child->inheritedStyleWithChanges(
        [](const Style& from, const Style& to) { to->setLabelColor(from->accentColor()); },
        "grandchild", scheme);
    parent->updateStyleWithChanges(makeBlue(0.25));
    EXPECT_EQ(grandchild->labelColor(), NSColor::colorWithWhite(0.25, 1));
    EXPECT_EQ(localCounter(grandchild), 1U);
    EXPECT_EQ(grandchild->seed(), 3U);
}

TEST_F(InheritedStyleTests, AChildStandsInTheGivenSchemeOnceItsValuesAreThere) {
    bool stoodThere = true;
    const auto child = parent->inheritedStyleWithChanges(
        [&](const Style&, const Style& made) {
            stoodThere = made->scheme() || scheme->styleForIdentifier("child");
        },
        "child", scheme);
    EXPECT_FALSE(stoodThere);
    EXPECT_EQ(scheme->styleForIdentifier("child"), child);
    EXPECT_EQ(child->scheme(), scheme);
    EXPECT_EQ(child->domain(), domain);
    EXPECT_EQ(child->parentStyle(), parent);
    EXPECT_EQ(child->identifier(), "child");
}

TEST_F(InheritedStyleTests, AChildsDomainIsThatOfTheGivenSchemeFromTheStart) {
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    std::vector<std::shared_ptr<ZelStyleDomain>> domains;
    const auto child = parent->inheritedStyleWithChanges(
        [&](const Style&, const Style& made) { domains.push_back(made->domain()); }, "child",
        other->darkScheme());
    EXPECT_EQ(domains, (std::vector{other}));
    EXPECT_EQ(child->domain(), other);
}

TEST_F(InheritedStyleTests, WhatTheFirstChangesReadStaysMergedAsTheyReadIt) {
    parent->setBlueColor(NSColor::colorWithWhite(0.5, 1));
    const auto child = parent->inheritedStyleWithChanges(
        [](const Style& from, const Style& made) {
            EXPECT_EQ(made->blueColor(), NSColor::colorWithWhite(0.5, 1));
            from->setBlueColor(NSColor::colorWithWhite(0.75, 1));
        },
        "child", scheme);
    EXPECT_EQ(child->blueColor(), NSColor::colorWithWhite(0.5, 1));
    EXPECT_EQ(parent->blueColor(), NSColor::colorWithWhite(0.75, 1));
}

TEST_F(InheritedStyleTests, TheSameSchemeAndIdentifierAnswerTheSameChild) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    bool called = false;
    const auto again =
        parent->inheritedStyleWithChanges([&](auto&&...) { called = true; }, "child", scheme);
    EXPECT_EQ(again, child);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_FALSE(called);
    EXPECT_EQ(computed.size(), 2U) << "the first changes still stand";
}

TEST_F(InheritedStyleTests, AStyleFoundInTheSchemeIsAnsweredWhateverItsParent) {
    const auto stranger = addStyle(scheme, "child");
    const auto found = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    EXPECT_EQ(found, stranger);
    EXPECT_EQ(stranger->parentStyle(), nullptr);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_TRUE(computed.empty());
    EXPECT_EQ(stranger->seed(), 0U);
}

TEST_F(InheritedStyleTests, AStyleAskedForItsOwnIdentifierAnswersItself) {
    EXPECT_EQ(parent->inheritedStyleWithChanges(copyBlue(), "main", scheme), parent);
    EXPECT_TRUE(computed.empty());
    EXPECT_EQ(parent->parentStyle(), nullptr);
}

TEST_F(InheritedStyleTests, WithoutASchemeTheChildHasTheCurrentSchemesDomainAndStandsNowhere) {
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    domain->setCurrentScheme(other->darkScheme());
    const auto child = parent->inheritedStyleWithChanges(nullptr, "child", nullptr);
    EXPECT_EQ(child->domain(), other);
    EXPECT_EQ(child->scheme(), nullptr);
    EXPECT_TRUE(other->darkScheme()->stylesByIdentifier().empty());
    EXPECT_EQ(scheme->styleForIdentifier("child"), nullptr);
}

TEST_F(InheritedStyleTests, WithoutASchemeEveryCallMakesAChildOfItsOwn) {
    const auto first = parent->inheritedStyleWithChanges(copyBlue(), "child", nullptr);
    const auto second = parent->inheritedStyleWithChanges(copyBlue(), "child", nullptr);
    EXPECT_NE(first, second);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(first->seed(), 2U);
    EXPECT_EQ(second->seed(), 2U);
}

TEST_F(InheritedStyleTests, AChildOfAStyleWithoutADomainHasNoneEither) {
    const auto child = makeEmptyStyle()->inheritedStyleWithChanges(nullptr, "child", nullptr);
    EXPECT_EQ(child->domain(), nullptr);
}

TEST_F(InheritedStyleTests, TheParentDoesNotKeepAChildAlive) {
    const auto captured = std::make_shared<int>(0);
    std::weak_ptr<ZelStyle> child = parent->inheritedStyleWithChanges(
        [captured](const Style&, const Style&) { ++*captured; }, "child", nullptr);
    EXPECT_TRUE(child.expired());
    EXPECT_EQ(captured.use_count(), 1);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(*captured, 1);
}

TEST_F(InheritedStyleTests, AChildWithoutChangesIsToldOfNothing) {
    const auto child = parent->inheritedStyleWithChanges(nullptr, "child", scheme);
    EXPECT_EQ(scheme->styleForIdentifier("child"), child);
    const auto before = child->blueColor();
    const auto merged = child->effectiveValues();
    parent->updateStyleWithChanges(makeBlue(0.25));
    EXPECT_EQ(localCounter(child), 0U);
    EXPECT_EQ(child->seed(), 1U) << "its parent's counter is in it";
    EXPECT_EQ(child->effectiveValues(), merged);
    EXPECT_EQ(child->blueColor(), before);
    child->updateStyleWithChanges(nullptr);
    EXPECT_EQ(child->blueColor(), NSColor::colorWithWhite(0.25, 1));
}

class ParticularStyle : public ZelStyle {};

TEST_F(InheritedStyleTests, AChildIsAPlainStyleWhateverItsParentsClass) {
    const auto particular = alloc<ParticularStyle>();
    particular->init();
    const auto child = particular->inheritedStyleWithChanges(nullptr, "child", scheme);
    EXPECT_EQ(std::dynamic_pointer_cast<ParticularStyle>(child), nullptr);
    EXPECT_TRUE(child->isChildOf(particular));
}

TEST_F(InheritedStyleTests, TheChangesAreGivenTheParentOfThatMoment) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    const auto adopting = makeEmptyStyle();
    child->setParentStyle(adopting);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(computed.back(), std::pair(adopting, child));
    child->setParentStyle(nullptr);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(computed.back(), std::pair(Style(), child));
    EXPECT_EQ(localCounter(child), 2U);
}

TEST_F(InheritedStyleTests, AnObserverOwnedByTheChildReplacesItsLinkToTheParent) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    int observed = 0;
    parent->addStyleUpdateObserver([&](auto&&...) { ++observed; }, child, false);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(observed, 1);
    EXPECT_EQ(computed.size(), 1U);
    EXPECT_EQ(localCounter(child), 0U);
}

TEST_F(InheritedStyleTests, RemovingTheChildAsAnOwnerCutsItsLinkToTheParent) {
    const auto child = parent->inheritedStyleWithChanges(copyBlue(), "child", scheme);
    parent->removeStyleUpdateObserverWithOwner(child);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(computed.size(), 1U);
    EXPECT_EQ(localCounter(child), 0U);
}

TEST_F(InheritedStyleTests, TheStylingLockIsHeldWhileTheChildIsComputed) {
    std::vector<bool> free;
    const auto child = parent->inheritedStyleWithChanges(
        [&](const Style& /*from*/, const Style& /*to*/) {
            requireNoPrivateLock();
            free.push_back(stylingLockIsFree());
        },
        "child", scheme);
    parent->updateStyleWithChanges(nullptr);
    EXPECT_EQ(free, (std::vector<bool>{false, false}));
    EXPECT_TRUE(everyLockIsFree(parent));
    EXPECT_TRUE(everyLockIsFree(child));
}

TEST_F(InheritedStyleTests, AChildWithoutAnIdentifierCannotStandInAScheme) {
    EXPECT_THROW((void)parent->inheritedStyleWithChanges(copyBlue(), std::nullopt, scheme),
                 ZelInvalidArgument);
    EXPECT_EQ(computed.size(), 1U);
    EXPECT_EQ(scheme->stylesByIdentifier().size(), 1U);
    EXPECT_TRUE(everyLockIsFree(parent));
    runElsewhere([&] { EXPECT_NE(addStyle(scheme, "other"), nullptr); });
    EXPECT_NE(parent->inheritedStyleWithChanges(copyBlue(), std::nullopt, nullptr), nullptr);
}

} // namespace
} // namespace zeltest
