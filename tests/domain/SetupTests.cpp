// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Providers.h"
#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelExceptions.h>

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

/// The setup happens once per process, so that each of these wants a process of its own; in a
/// process that has had it, they are skipped.
class SetupTests : public StylingTests {
protected:
    void SetUp() override {
        static bool had = false;
        if (std::exchange(had, true)) {
            GTEST_SKIP() << "this process has had its setup";
        }
    }
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
};

TEST_F(SetupTests, LightAndDefaultShareTheLightSchemesMainStyleAndDarkHasAnother) {
    ZelStyleDomain::setupStyles();
    const auto light = domain->lightScheme()->styleForIdentifier("main");
    const auto dark = domain->darkScheme()->styleForIdentifier("main");
    ASSERT_NE(light, nullptr);
    ASSERT_NE(dark, nullptr);
    EXPECT_EQ(domain->defaultScheme()->styleForIdentifier("main"), light);
    EXPECT_NE(dark, light);
    EXPECT_EQ(schemeCount(*domain), 3U);
    EXPECT_EQ(light->scheme(), domain->lightScheme());
    EXPECT_EQ(dark->scheme(), domain->darkScheme());
    EXPECT_EQ(light->domain(), domain);
    EXPECT_EQ(dark->domain(), domain);
    EXPECT_EQ(light->parentStyle(), nullptr);
    EXPECT_EQ(dark->parentStyle(), nullptr);
    EXPECT_TRUE(light->isLightStyle());
    EXPECT_TRUE(dark->isDarkStyle());
    EXPECT_NE(dark->backgroundColor(), std::nullopt);
}

TEST_F(SetupTests, TheDefaultDomainFollowsTheSystemFromThenOn) {
    ZelStyleDomain::setupStyles();
    EXPECT_TRUE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
    makeSystemDark();
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(domain->mainStyle(), domain->darkScheme()->styleForIdentifier("main"));
}

TEST_F(SetupTests, TheLightStyleStandsInItsSchemesBeforeTheDarkOneIsFilled) {
    const ProvidersRestored restored;
    Names filled;
    addProvider("looking", std::nullopt, [&](const auto&, const auto& scheme) {
        filled.push_back(scheme->identifier().value_or(""));
        const auto light = domain->lightScheme()->styleForIdentifier("main");
        EXPECT_EQ(light != nullptr, filled.size() == 2);
        EXPECT_EQ(domain->defaultScheme()->styleForIdentifier("main"), light);
        EXPECT_EQ(domain->darkScheme()->styleForIdentifier("main"), nullptr);
        EXPECT_FALSE(domain->schemeFollowsSystem());
        EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    });
    ZelStyleDomain::setupStyles();
    EXPECT_EQ(filled, (Names{"light", "dark"}));
    EXPECT_TRUE(domain->schemeFollowsSystem());
}

TEST_F(SetupTests, OnlyTheDefaultDomainIsSetUp) {
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    ZelStyleDomain::setupStyles();
    EXPECT_EQ(other->mainStyle(), nullptr);
    EXPECT_FALSE(other->schemeFollowsSystem());
    EXPECT_EQ(schemeCount(*other), 1U);
}

TEST_F(SetupTests, ALaterSetupDoesNothing) {
    ZelStyleDomain::setupStyles();
    const auto light = domain->lightScheme()->styleForIdentifier("main");
    domain->setSchemeFollowsSystem(false);
    domain->setCurrentScheme(domain->darkScheme());
    ZelStyleDomain::setupStyles();
    EXPECT_EQ(domain->lightScheme()->styleForIdentifier("main"), light);
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
}

TEST_F(SetupTests, AfterAResetTheNewDefaultDomainIsEmptyAndIsNotSetUpAgain) {
    ZelStyleDomain::setupStyles();
    ZelStyleDomain::domainForIdentifier("_reset");
    const auto renewed = ZelStyleDomain::defaultDomain();
    EXPECT_NE(renewed, domain);
    EXPECT_EQ(renewed->mainStyle(), nullptr);
    ZelStyleDomain::setupStyles();
    EXPECT_EQ(ZelStyleDomain::defaultDomain(), renewed);
    EXPECT_EQ(renewed->mainStyle(), nullptr);
    EXPECT_FALSE(renewed->schemeFollowsSystem());
    EXPECT_EQ(schemeCount(*renewed), 1U);
}

TEST_F(SetupTests, ThreadsThatSetUpAtOnceAllFindItDone) {
    std::vector<std::function<void()>> tasks(4, [this] {
        ZelStyleDomain::setupStyles();
        EXPECT_TRUE(domain->schemeFollowsSystem());
        EXPECT_NE(domain->styleForIdentifier("main"), nullptr);
        EXPECT_TRUE(domain->darkScheme()->styleForIdentifier("main") != nullptr);
    });
    runAtOnce(std::move(tasks));
}

TEST_F(SetupTests, AHandlerThatItCallsMayAskForItAgain) {
    const auto owner = makePlain();
    int calls = 0;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) {
            ++calls;
            if (calls == 2) {
                ZelStyleDomain::setupStyles();
            }
        },
        owner);
    runElsewhere([] { ZelStyleDomain::setupStyles(); });
    EXPECT_EQ(calls, 2);
}

/// The setup raises, in a style for the light scheme or in one for the dark scheme; the next one,
/// on another thread, does it all.
class SetupAfterExceptionTests : public SetupTests {
protected:
    SetupAfterExceptionTests() {
        domain->registerChangeHandler(recorder.handler("owner"), owner);
        recorder.take();
    }
    /// Has a provider do something when it fills a style for that scheme, once.
    void whenFilling(std::string identifier, std::function<void()> act) {
        addProvider("acting", std::nullopt,
                    [this, identifier = std::move(identifier),
                     act = std::move(act)](const auto&, const auto& scheme) {
                        if (scheme->identifier() == identifier && !std::exchange(hasActed, true)) {
                            act();
                        }
                    });
    }
    void expectTheNextSetupDoesItAll() {
        EXPECT_EQ(recorder.take(), StyleCalls{});
        EXPECT_FALSE(domain->schemeFollowsSystem());
        runElsewhere([] { ZelStyleDomain::setupStyles(); });
        const auto light = domain->lightScheme()->styleForIdentifier("main");
        const auto dark = domain->darkScheme()->styleForIdentifier("main");
        ASSERT_NE(light, nullptr);
        ASSERT_NE(dark, nullptr);
        EXPECT_EQ(domain->defaultScheme()->styleForIdentifier("main"), light);
        EXPECT_EQ(light->effectiveValues()->size(), 55U);
        EXPECT_EQ(dark->effectiveValues()->size(), 55U);
        EXPECT_TRUE(dark->isDarkStyle());
        EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", light, 1}}));
        runElsewhere([] { makeSystemDark(); });
        EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
    }

    const ProvidersRestored restored;
    bool hasActed = false;
    Recorder recorder;
    const std::shared_ptr<Plain> owner = makePlain();
};

class SetupOfEitherTests : public SetupAfterExceptionTests,
                           public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Of, SetupOfEitherTests, testing::Values("light", "dark"),
                         [](const auto& each) { return each.param; });

TEST_P(SetupOfEitherTests, AProviderThatRaisedIsAskedAgain) {
    whenFilling(GetParam(), [] { throw std::runtime_error("no colours"); });
    EXPECT_THROW(ZelStyleDomain::setupStyles(), std::runtime_error);
    expectTheNextSetupDoesItAll();
}

TEST_F(SetupAfterExceptionTests, AProviderThatChangedTheRegistryIsAskedAgain) {
    whenFilling("dark", [] { addProvider("added"); });
    EXPECT_THROW(ZelStyleDomain::setupStyles(), ZelEnumerationMutation);
    expectTheNextSetupDoesItAll();
}

TEST_F(SetupAfterExceptionTests, AHandlerThatRaisedDidSoWhenAllWasDone) {
    const auto failing = makePlain();
    domain->registerChangeHandler(
        [](const auto&, const auto&, auto event) {
            if (event != ZelStyleChangeEventInitial) {
                throw std::runtime_error("not now");
            }
        },
        failing);
    EXPECT_THROW(ZelStyleDomain::setupStyles(), std::runtime_error);
    EXPECT_TRUE(domain->schemeFollowsSystem());
    const auto light = domain->lightScheme()->styleForIdentifier("main");
    ASSERT_NE(light, nullptr);
    runElsewhere([] { ZelStyleDomain::setupStyles(); });
    EXPECT_EQ(domain->lightScheme()->styleForIdentifier("main"), light);
}

TEST_F(SetupAfterExceptionTests, AHandlerThatEndedFollowingBeforeItRaisedIsNotOverruled) {
    const auto failing = makePlain();
    domain->registerChangeHandler(
        [this](const auto&, const auto&, auto event) {
            if (event != ZelStyleChangeEventInitial && domain->schemeFollowsSystem()) {
                domain->setSchemeFollowsSystem(false);
                throw std::runtime_error("not now");
            }
        },
        failing);
    EXPECT_THROW(ZelStyleDomain::setupStyles(), std::runtime_error);
    const auto light = domain->lightScheme()->styleForIdentifier("main");
    ASSERT_NE(light, nullptr);
    ZelStyleDomain::setupStyles();
    EXPECT_EQ(domain->lightScheme()->styleForIdentifier("main"), light);
    EXPECT_FALSE(domain->schemeFollowsSystem());
}

} // namespace
} // namespace zeltest
