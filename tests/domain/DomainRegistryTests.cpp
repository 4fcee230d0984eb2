// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

#include <set>
#include <type_traits>
#include <typeinfo>

namespace zeltest {
namespace {

using namespace zel;

class DomainRegistryTests : public StylingTests {};

TEST_F(DomainRegistryTests, TheIdentifiersAreExactlyThese) {
    EXPECT_EQ(ZelStyleDomainIdentifierDefault, "default");
    EXPECT_EQ(ZelStyleSchemeIdentifierDefault, "default");
    EXPECT_EQ(ZelStyleSchemeIdentifierLight, "light");
    EXPECT_EQ(ZelStyleSchemeIdentifierDark, "dark");
    EXPECT_EQ(ZelStyleIdentifierMain, "main");
    EXPECT_EQ(ZelStyleSystemAppearanceChangedNotification, "ZelStyleSystemAppearanceChanged");
}

TEST_F(DomainRegistryTests, TheIdentifiersAreVariablesThatAHostMayChange) {
    static_assert(!std::is_const_v<decltype(ZelStyleDomainIdentifierDefault)>);
    static_assert(!std::is_const_v<decltype(ZelStyleSchemeIdentifierDefault)>);
    static_assert(!std::is_const_v<decltype(ZelStyleSchemeIdentifierLight)>);
    static_assert(!std::is_const_v<decltype(ZelStyleSchemeIdentifierDark)>);
    static_assert(!std::is_const_v<decltype(ZelStyleSystemAppearanceChangedNotification)>);
    static_assert(!std::is_const_v<decltype(ZelStyleIdentifierMain)>);

    const auto domain = ZelStyleDomain::defaultDomain();
    const auto cover = addStyle(domain->defaultScheme(), "cover");
    const auto former = std::exchange(ZelStyleIdentifierMain, "cover");
    EXPECT_EQ(domain->mainStyle(), cover);
    ZelStyleIdentifierMain = former;
}

TEST_F(DomainRegistryTests, NilAndDefaultNameTheDefaultDomain) {
    const auto domain = ZelStyleDomain::defaultDomain();
    ASSERT_NE(domain, nullptr);
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier(std::nullopt), domain);
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("default"), domain);
    EXPECT_EQ(ZelStyleDomain::defaultDomain(), domain);
    EXPECT_EQ(domain->domainIdentifier(), "default");
}

TEST_F(DomainRegistryTests, AnUnknownIdentifierMakesADomainThatIsThenFoundAgain) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    ASSERT_NE(domain, nullptr);
    EXPECT_NE(domain, ZelStyleDomain::defaultDomain());
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("editor"), domain);
    EXPECT_EQ(domain->domainIdentifier(), "editor");
}

TEST_F(DomainRegistryTests, TheEmptyStringIsAnIdentifierOfItsOwn) {
    const auto domain = ZelStyleDomain::domainForIdentifier("");
    EXPECT_NE(domain, ZelStyleDomain::defaultDomain());
    EXPECT_EQ(domain->domainIdentifier(), "");
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier(""), domain);
}

TEST_F(DomainRegistryTests, TheRegistryKeepsADomainThatNobodyElseHolds) {
    const std::weak_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
    EXPECT_FALSE(domain.expired());
    EXPECT_EQ(ZelStyleDomain::domainForIdentifier("editor"), domain.lock());
}

TEST_F(DomainRegistryTests, SchemesAndStylesDoNotKeepTheirDomainAlive) {
    auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto scheme = domain->darkScheme();
    const auto style = addStyle(scheme, "main");
    EXPECT_EQ(scheme->domain(), domain);
    EXPECT_EQ(style->domain(), domain);
    domain.reset();
    ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_EQ(scheme->domain(), nullptr);
    EXPECT_EQ(style->domain(), nullptr);
}

TEST_F(DomainRegistryTests, ADomainMadeWithoutIdentifierIsNotRegistered) {
    const auto domain = alloc<ZelStyleDomain>();
    ASSERT_EQ(domain->init(), domain);
    EXPECT_EQ(domain->domainIdentifier(), std::nullopt);
    ASSERT_NE(domain->currentScheme(), nullptr);
    EXPECT_EQ(domain->currentScheme()->identifier(), "default");
    EXPECT_EQ(domain->currentScheme()->domain(), domain);
    EXPECT_NE(ZelStyleDomain::defaultDomain(), domain);
}

TEST_F(DomainRegistryTests, ResetEmptiesTheRegistryAndRegistersANewDomainUnderItsOwnName) {
    const auto domain = ZelStyleDomain::defaultDomain();
    const auto editor = ZelStyleDomain::domainForIdentifier("editor");
    const auto reset = ZelStyleDomain::domainForIdentifier("_reset");
    ASSERT_NE(reset, nullptr);
    EXPECT_EQ(reset->domainIdentifier(), "_reset");
    EXPECT_EQ(schemeCount(*reset), 1U);
    EXPECT_NE(ZelStyleDomain::defaultDomain(), domain);
    EXPECT_NE(ZelStyleDomain::domainForIdentifier("editor"), editor);
}

TEST_F(DomainRegistryTests, EveryResetAnswersANewDomain) {
    const auto first = ZelStyleDomain::domainForIdentifier("_reset");
    const auto second = ZelStyleDomain::domainForIdentifier("_reset");
    EXPECT_NE(first, second);
    EXPECT_EQ(second->domainIdentifier(), "_reset");
}

TEST_F(DomainRegistryTests, OnlyTheWholeWordResets) {
    const auto domain = ZelStyleDomain::defaultDomain();
    for (const char* each : {"_reset ", "_Reset", "reset", "_rese", "_resets"}) {
        ZelStyleDomain::domainForIdentifier(each);
        EXPECT_EQ(ZelStyleDomain::defaultDomain(), domain) << each;
    }
}

TEST_F(DomainRegistryTests, ADomainThatSomebodyHoldsOutlivesAResetAndWorksOn) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto main = addStyle(domain->defaultScheme(), "main");
    ZelStyleDomain::domainForIdentifier("_reset");
    Recorder recorder;
    const auto owner = makePlain();
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", main, 0}}));
    EXPECT_EQ(domain->domainIdentifier(), "editor");
}

TEST_F(DomainRegistryTests, ANewDomainHasItsDefaultSchemeCurrentAndNothingElse) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    EXPECT_EQ(schemeCount(*domain), 1U);
    EXPECT_TRUE(hasScheme(*domain, "default"));
    EXPECT_EQ(domain->currentScheme(), domain->defaultScheme());
    EXPECT_TRUE(domain->currentScheme()->stylesByIdentifier().empty());
    EXPECT_EQ(domain->mainStyle(), nullptr);
    EXPECT_FALSE(domain->schemeFollowsSystem());
    EXPECT_EQ(domain->styleClass(), std::nullopt);
    EXPECT_EQ(ownerCount(*domain), 0U);
    EXPECT_EQ(objectCount(*domain), 0U);
}

TEST_F(DomainRegistryTests, TheStyleClassIsKeptForTheApplication) {
    const auto domain = ZelStyleDomain::defaultDomain();
    domain->setStyleClass(typeid(ZelStyle));
    EXPECT_EQ(domain->styleClass(), std::type_index(typeid(ZelStyle)));
    domain->setStyleClass(std::nullopt);
    EXPECT_EQ(domain->styleClass(), std::nullopt);
}

TEST_F(DomainRegistryTests, ThreadsThatAskAtOnceGetOneDomain) {
    for (int round = 0; round < 50; ++round) {
        ZelStyleDomain::domainForIdentifier("_reset");
        std::vector<std::shared_ptr<ZelStyleDomain>> found(4);
        std::vector<std::function<void()>> tasks;
        for (auto& each : found) {
            tasks.push_back([&each] { each = ZelStyleDomain::domainForIdentifier("shared"); });
        }
        runAtOnce(std::move(tasks));
        EXPECT_EQ(std::set(found.begin(), found.end()).size(), 1U);
        EXPECT_EQ(found.front()->currentScheme(), found.front()->defaultScheme());
    }
}

TEST_F(DomainRegistryTests, ADomainHasItsSchemeButNoIdentifierYetWhileItsInitRuns) {
    class Particular : public ZelStyleDomain {
    public:
        std::optional<std::string> during = "not asked";
        std::shared_ptr<NSObject> init() override {
            const auto self = ZelStyleDomain::init();
            during = domainIdentifier();
            EXPECT_EQ(currentScheme(), defaultScheme());
            return self;
        }
    };
    const auto particular = alloc<Particular>();
    EXPECT_EQ(particular->initWithDomainIdentifier("editor"), particular);
    EXPECT_EQ(particular->during, std::nullopt);
    EXPECT_EQ(particular->domainIdentifier(), "editor");
}

TEST_F(DomainRegistryTests, ADomainWhoseInitFailsIsNil) {
    class FailingDomain : public ZelStyleDomain {
        std::shared_ptr<NSObject> init() override { return nullptr; }
    };
    const auto failing = alloc<FailingDomain>();
    EXPECT_EQ(failing->initWithDomainIdentifier("editor"), nullptr);
    EXPECT_EQ(failing->domainIdentifier(), std::nullopt);
    EXPECT_EQ(failing->currentScheme(), nullptr);
}

} // namespace
} // namespace zeltest
