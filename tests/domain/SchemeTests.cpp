// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelExceptions.h>

namespace zeltest {
namespace {

using namespace zel;

class SchemeTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    Recorder recorder;
};

TEST_F(SchemeTests, AnUnknownIdentifierMakesAnEmptySchemeThatIsThenFoundAgain) {
    const auto scheme = domain->schemeForIdentifier("sepia");
    ASSERT_NE(scheme, nullptr);
    EXPECT_EQ(scheme->identifier(), "sepia");
    EXPECT_EQ(scheme->domain(), domain);
    EXPECT_TRUE(scheme->stylesByIdentifier().empty());
    EXPECT_EQ(domain->schemeForIdentifier("sepia"), scheme);
    EXPECT_EQ(schemeCount(*domain), 2U);
}

TEST_F(SchemeTests, TheLightAndDarkSchemesAreMadeWhenFirstAskedFor) {
    EXPECT_FALSE(hasScheme(*domain, "light"));
    EXPECT_FALSE(hasScheme(*domain, "dark"));
    const auto light = domain->lightScheme();
    EXPECT_EQ(light->identifier(), "light");
    EXPECT_FALSE(hasScheme(*domain, "dark"));
    const auto dark = domain->darkScheme();
    EXPECT_EQ(dark->identifier(), "dark");
    EXPECT_EQ(domain->schemeForIdentifier("light"), light);
    EXPECT_EQ(domain->schemeForIdentifier("dark"), dark);
    EXPECT_EQ(domain->schemeForIdentifier("default"), domain->defaultScheme());
}

TEST_F(SchemeTests, ANilSchemeIdentifierRaisesAndLeavesEveryLockFree) {
    EXPECT_THROW((void)domain->schemeForIdentifier(std::nullopt), ZelInvalidArgument);
    EXPECT_EQ(schemeCount(*domain), 1U);
    runElsewhere([&] { EXPECT_NE(domain->schemeForIdentifier("sepia"), nullptr); });
}

TEST_F(SchemeTests, TheSwitchHasHappenedWhenHandlersRun) {
    addStyle(domain->defaultScheme(), "main");
    const auto dark = addStyle(domain->darkScheme(), "main");
    std::shared_ptr<ZelStyleScheme> seenScheme;
    std::shared_ptr<ZelStyle> seenMain;
    const auto owner = makePlain();
    domain->registerChangeHandler(recorder.handler("owner",
                                                   [&] {
                                                       seenScheme = domain->currentScheme();
                                                       seenMain = domain->mainStyle();
                                                   }),
                                  owner);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(seenScheme, domain->darkScheme());
    EXPECT_EQ(seenMain, dark);
}

TEST_F(SchemeTests, ANilCurrentSchemeIsAcceptedAndLeavesTheDefaultSchemesStyles) {
    const auto plain = addStyle(domain->defaultScheme(), "main");
    const auto dark = addStyle(domain->darkScheme(), "main");
    domain->setCurrentScheme(domain->darkScheme());
    const auto owner = makePlain();
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 0}}));
    domain->setCurrentScheme(nullptr);
    EXPECT_EQ(domain->currentScheme(), nullptr);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", plain, 1}}));
    EXPECT_EQ(domain->mainStyle(), plain);
    domain->setCurrentScheme(nullptr);
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(SchemeTests, ASchemeOfAnotherDomainIsAcceptedAsCurrent) {
    const auto plain = addStyle(domain->defaultScheme(), "main");
    const auto other = ZelStyleDomain::domainForIdentifier("terminal");
    const auto foreign = addStyle(other->darkScheme(), "main");
    domain->setCurrentScheme(other->darkScheme());
    EXPECT_EQ(domain->currentScheme(), other->darkScheme());
    EXPECT_EQ(domain->mainStyle(), foreign);
    EXPECT_EQ(foreign->domain(), other);
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(domain->mainStyle(), plain);
}

TEST_F(SchemeTests, TheCurrentSchemeIsHeldByTheDomain) {
    auto scheme = alloc<ZelStyleScheme>()->initWithIdentifier("loose", nullptr);
    const std::weak_ptr<ZelStyleScheme> held = scheme;
    domain->setCurrentScheme(scheme);
    scheme.reset();
    EXPECT_FALSE(held.expired());
    domain->setCurrentScheme(nullptr);
    EXPECT_TRUE(held.expired());
}

TEST_F(SchemeTests, LookingForAStyleMakesNoDefaultScheme) {
    const auto former = std::exchange(ZelStyleSchemeIdentifierDefault, "elsewhere");
    EXPECT_EQ(domain->styleForIdentifier("main"), nullptr);
    domain->setCurrentScheme(nullptr);
    EXPECT_EQ(domain->styleForIdentifier("main"), nullptr);
    EXPECT_FALSE(hasScheme(*domain, "elsewhere"));
    const auto found = addStyle(domain->defaultScheme(), "main");
    EXPECT_TRUE(hasScheme(*domain, "elsewhere"));
    EXPECT_EQ(domain->styleForIdentifier("main"), found);
    ZelStyleSchemeIdentifierDefault = former;
}

TEST_F(SchemeTests, AnUnknownOrNilStyleIdentifierFindsNothing) {
    addStyle(domain->defaultScheme(), "main");
    EXPECT_EQ(domain->styleForIdentifier("unheard-of"), nullptr);
    EXPECT_EQ(domain->styleForIdentifier(""), nullptr);
    EXPECT_EQ(domain->styleForIdentifier(std::nullopt), nullptr);
}

} // namespace
} // namespace zeltest
