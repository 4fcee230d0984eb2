// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"

namespace zeltest {
namespace {

using namespace zel;

class StyleSchemeTests : public StylingTests {
protected:
    std::shared_ptr<ZelStyleDomain> domain =
        alloc<ZelStyleDomain>()->initWithDomainIdentifier("editor");
    const std::shared_ptr<ZelStyleScheme> scheme =
        alloc<ZelStyleScheme>()->initWithIdentifier("sepia", domain);

    static Style named(std::string_view identifier) {
        auto style = makeEmptyStyle();
        style->setIdentifier(identifier);
        return style;
    }
    /// Whether another thread can use the scheme.
    bool isUsableElsewhere() {
        runElsewhere([&] {
            scheme->addStyle(named("probe"));
            scheme->removeStyle(named("probe"));
        });
        return true;
    }
};

TEST_F(StyleSchemeTests, ANewSchemeIsEmptyAndKnowsItsDomain) {
    EXPECT_EQ(scheme->identifier(), "sepia");
    EXPECT_EQ(scheme->domain(), domain);
    EXPECT_TRUE(scheme->stylesByIdentifier().empty());
    EXPECT_EQ(scheme->styleForIdentifier("main"), nullptr);
}

TEST_F(StyleSchemeTests, ASchemeMayHaveNoIdentifierAndNoDomain) {
    const auto bare = alloc<ZelStyleScheme>()->initWithIdentifier(std::nullopt, nullptr);
    EXPECT_EQ(bare->identifier(), std::nullopt);
    EXPECT_EQ(bare->domain(), nullptr);
    EXPECT_EQ(alloc<ZelStyleScheme>()->initWithIdentifier("", nullptr)->identifier(), "");
}

TEST_F(StyleSchemeTests, AddingTiesTheStyleToSchemeAndDomain) {
    const auto style = named("main");
    scheme->addStyle(style);
    EXPECT_EQ(style->scheme(), scheme);
    EXPECT_EQ(style->domain(), domain);
    EXPECT_EQ(scheme->styleForIdentifier("main"), style);
    EXPECT_EQ(scheme->stylesByIdentifier(), (ZelStyleScheme::Styles{{"main", style}}));
}

TEST_F(StyleSchemeTests, TheEmptyStringIsAnIdentifierAndNilIsNone) {
    const auto style = named("");
    scheme->addStyle(style);
    EXPECT_EQ(scheme->styleForIdentifier(""), style);
    EXPECT_EQ(scheme->styleForIdentifier(std::nullopt), nullptr);
}

TEST_F(StyleSchemeTests, ASecondStyleOfAnIdentifierReplacesTheFirstWhichKeepsItsReferences) {
    const auto first = named("main");
    const auto second = named("main");
    scheme->addStyle(first);
    scheme->addStyle(second);
    EXPECT_EQ(scheme->styleForIdentifier("main"), second);
    EXPECT_EQ(scheme->stylesByIdentifier().size(), 1U);
    EXPECT_EQ(first->scheme(), scheme);
    EXPECT_EQ(first->domain(), domain);
}

TEST_F(StyleSchemeTests, RemovingTheReplacedStyleEmptiesTheEntryOfTheOther) {
    const auto first = named("main");
    const auto second = named("main");
    scheme->addStyle(first);
    scheme->addStyle(second);
    scheme->removeStyle(first);
    EXPECT_EQ(scheme->styleForIdentifier("main"), nullptr);
    EXPECT_TRUE(scheme->stylesByIdentifier().empty());
    EXPECT_EQ(first->scheme(), nullptr);
    EXPECT_EQ(first->domain(), nullptr);
    EXPECT_EQ(second->scheme(), scheme);
    EXPECT_EQ(second->domain(), domain);
}

TEST_F(StyleSchemeTests, RemovingAStyleOfAnotherSchemeClearsItsReferencesAllTheSame) {
    const auto other = alloc<ZelStyleScheme>()->initWithIdentifier("dark", domain);
    const auto here = named("main");
    const auto there = named("main");
    scheme->addStyle(here);
    other->addStyle(there);
    scheme->removeStyle(there);
    EXPECT_EQ(scheme->styleForIdentifier("main"), nullptr);
    EXPECT_EQ(here->scheme(), scheme);
    EXPECT_EQ(there->scheme(), nullptr);
    EXPECT_EQ(there->domain(), nullptr);
    EXPECT_EQ(other->styleForIdentifier("main"), there);
}

TEST_F(StyleSchemeTests, RemovingWhatIsNotThereClearsItsReferencesOnly) {
    const auto style = named("main");
    const auto stays = named("quiet");
    scheme->addStyle(stays);
    style->setDomain(domain);
    scheme->removeStyle(style);
    EXPECT_EQ(style->domain(), nullptr);
    EXPECT_EQ(scheme->stylesByIdentifier(), (ZelStyleScheme::Styles{{"quiet", stays}}));
}

TEST_F(StyleSchemeTests, AStyleMayStandInTwoSchemesAndNamesTheSecond) {
    const auto other = alloc<ZelStyleScheme>()->initWithIdentifier("dark", domain);
    const auto style = named("main");
    scheme->addStyle(style);
    other->addStyle(style);
    EXPECT_EQ(scheme->styleForIdentifier("main"), style);
    EXPECT_EQ(other->styleForIdentifier("main"), style);
    EXPECT_EQ(style->scheme(), other);
}

TEST_F(StyleSchemeTests, AStyleAddedAfterTheDomainHasEndedHasNoDomain) {
    const auto style = named("main");
    style->setDomain(ZelStyleDomain::defaultDomain());
    domain.reset();
    ASSERT_EQ(scheme->domain(), nullptr);
    scheme->addStyle(style);
    EXPECT_EQ(style->domain(), nullptr);
    EXPECT_EQ(style->scheme(), scheme);
    EXPECT_EQ(scheme->styleForIdentifier("main"), style);
}

TEST_F(StyleSchemeTests, AStyleGoesByTheIdentifierThatItHasWhenItIsAddedOrRemoved) {
    const auto style = named("main");
    scheme->addStyle(style);
    style->setIdentifier("renamed");
    EXPECT_EQ(scheme->styleForIdentifier("main"), style);
    EXPECT_EQ(scheme->styleForIdentifier("renamed"), nullptr);
    scheme->removeStyle(style);
    EXPECT_EQ(scheme->styleForIdentifier("main"), style) << "nothing stood under the new name";
    EXPECT_EQ(style->scheme(), nullptr);
    scheme->addStyle(style);
    EXPECT_EQ(scheme->stylesByIdentifier(),
              (ZelStyleScheme::Styles{{"main", style}, {"renamed", style}}));
}

TEST_F(StyleSchemeTests, ASchemeKeepsItsStylesAlive) {
    auto style = named("main");
    const std::weak_ptr<ZelStyle> watched = style;
    scheme->addStyle(style);
    style.reset();
    ASSERT_FALSE(watched.expired());
    scheme->removeStyle(scheme->styleForIdentifier("main"));
    EXPECT_TRUE(watched.expired());
}

TEST_F(StyleSchemeTests, AddingAStyleWithoutIdentifierRaisesAfterItWasTiedToTheScheme) {
    const auto style = makeEmptyStyle();
    EXPECT_THROW(scheme->addStyle(style), ZelInvalidArgument);
    EXPECT_EQ(style->scheme(), scheme);
    EXPECT_EQ(style->domain(), domain);
    EXPECT_TRUE(scheme->stylesByIdentifier().empty());
    EXPECT_TRUE(isUsableElsewhere());
}

TEST_F(StyleSchemeTests, RemovingAStyleWithoutIdentifierRaisesAfterItsReferencesWereCleared) {
    const auto style = named("main");
    scheme->addStyle(style);
    style->setIdentifier(std::nullopt);
    EXPECT_THROW(scheme->removeStyle(style), std::invalid_argument);
    EXPECT_EQ(style->scheme(), nullptr);
    EXPECT_EQ(style->domain(), nullptr);
    EXPECT_EQ(scheme->styleForIdentifier("main"), style);
    EXPECT_TRUE(isUsableElsewhere());
}

TEST_F(StyleSchemeTests, AddingOrRemovingNilRaisesAndChangesNothing) {
    const auto style = named("main");
    scheme->addStyle(style);
    EXPECT_THROW(scheme->addStyle(nullptr), ZelInvalidArgument);
    EXPECT_THROW(scheme->removeStyle(nullptr), ZelInvalidArgument);
    EXPECT_EQ(scheme->stylesByIdentifier(), (ZelStyleScheme::Styles{{"main", style}}));
    EXPECT_EQ(style->scheme(), scheme);
    runElsewhere([this] { (void)scheme->styleForIdentifier("main"); });
}

TEST_F(StyleSchemeTests, ReplacingTheTableLeavesTheStylesReferencesAlone) {
    const auto old = named("main");
    const auto fresh = named("other");
    scheme->addStyle(old);
    scheme->setStylesByIdentifier({{"main", fresh}});
    EXPECT_EQ(scheme->styleForIdentifier("main"), fresh);
    EXPECT_EQ(old->scheme(), scheme);
    EXPECT_EQ(fresh->scheme(), nullptr);
    EXPECT_EQ(fresh->domain(), nullptr);
}

TEST_F(StyleSchemeTests, ACopyOfTheTableStaysAsItWas) {
    const auto style = named("main");
    scheme->addStyle(style);
    const auto copy = scheme->stylesByIdentifier();
    scheme->removeStyle(style);
    EXPECT_EQ(copy, (ZelStyleScheme::Styles{{"main", style}}));
}

/// Tells, as it ends, whether the scheme could be used from another thread.
class EndingStyle : public ZelStyle {
public:
    std::function<void()> onEnd;
    ~EndingStyle() override { onEnd(); }
};

TEST_F(StyleSchemeTests, StylesEndWithTheSchemesLockFree) {
    int ended = 0;
    const auto add = [&] {
        const auto style = alloc<EndingStyle>();
        style->setIdentifier("main");
        style->onEnd = [&] { ended += isUsableElsewhere() ? 1 : 0; };
        scheme->addStyle(style);
    };
    add();
    add();
    EXPECT_EQ(ended, 1) << "replaced";
    scheme->setStylesByIdentifier({});
    EXPECT_EQ(ended, 2) << "the table was replaced";
    add();
    scheme->removeStyle(named("main"));
    EXPECT_EQ(ended, 3) << "removed";
}

TEST_F(StyleSchemeTests, ManyThreadsAddAndRemoveStyles) {
    const auto work = [&](std::string_view identifier) {
        for (int i = 0; i < 2000; ++i) {
            const auto style = named(identifier);
            scheme->addStyle(style);
            EXPECT_EQ(scheme->styleForIdentifier(identifier), style);
            if (i != 1999) {
                scheme->removeStyle(style);
            }
        }
    };
    runAtOnce({[&] { work("a"); }, [&] { work("b"); }, [&] { work("c"); }});
    EXPECT_EQ(scheme->stylesByIdentifier().size(), 3U);
}

TEST_F(StyleSchemeTests, ASchemeWhoseInitFailsIsNil) {
    class FailingScheme : public ZelStyleScheme {
        std::shared_ptr<NSObject> init() override { return nullptr; }
    };
    const auto failing = alloc<FailingScheme>();
    EXPECT_EQ(failing->initWithIdentifier("sepia", domain), nullptr);
    EXPECT_EQ(failing->identifier(), std::nullopt);
    EXPECT_EQ(failing->domain(), nullptr);
}

} // namespace
} // namespace zeltest
