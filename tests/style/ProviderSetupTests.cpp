// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Providers.h"

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

using Names = std::vector<std::string>;

class ProviderSetupTests : public StylingTests {
protected:
    static Style makeRoot(const std::shared_ptr<ZelStyleScheme>& scheme = nullptr) {
        return alloc<ZelStyle>()->initWithIdentifier("main", scheme);
    }
    /// Whether a registry that was walked can be used again, here and on another thread.
    static void expectTheNextSetupWorks() {
        runElsewhere([] { EXPECT_EQ(makeRoot()->effectiveValues()->size(), 55U); });
        EXPECT_NO_THROW((void)makeRoot());
    }

private:
    ProvidersRestored restored_;
};

TEST_F(ProviderSetupTests, ABuiltInProviderCanBeFoundAndRemoved) {
    const Providers found = ZelStyle::defaultValueProviders();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->identifier(), "main");
    EXPECT_EQ(found[1]->identifier(), "base");
    ZelStyle::removeDefaultValueProvider(found[0]);
    EXPECT_EQ(ZelStyle::defaultValueProviders(), Providers{found[1]});
    EXPECT_EQ(found.size(), 2U) << "a copy";
    const auto style = makeRoot();
    EXPECT_EQ(style->effectiveValues()->size(), 22U);
    EXPECT_EQ(style->labelColor(), std::nullopt);
}

TEST_F(ProviderSetupTests,
       CallbacksAreGivenTheSchemeNamedAtInitialisationAndAStyleThatStandsInNone) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto scheme = domain->darkScheme();
    std::vector<std::shared_ptr<ZelStyleScheme>> given;
    std::vector<Style> styles;
    const auto provider =
        addProvider("icons", std::nullopt,
                    [&](const Style& style, const std::shared_ptr<ZelStyleScheme>& with) {
                        styles.push_back(style);
                        given.push_back(with);
                        EXPECT_EQ(style->identifier(), "main");
                        EXPECT_EQ(style->scheme(), nullptr);
                        EXPECT_EQ(style->parentStyle(), nullptr);
                        EXPECT_EQ(style->domain(), with ? domain : nullptr);
                    });
    const auto style = makeRoot(scheme);
    EXPECT_EQ(given, (std::vector{scheme}));
    EXPECT_EQ(styles, (std::vector{style}));
    (void)makeRoot();
    EXPECT_EQ(given.back(), nullptr);
}

TEST_F(ProviderSetupTests, ASetupMovesNoCounterAndCallsNoObserver) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto owner = makePlain();
    int told = 0;
    const auto provider = addProvider("icons");
    provider->setWillApplyBlock([&](const Style& style, auto&&...) {
        style->addStyleUpdateObserver([&](auto&&...) { ++told; }, owner, false);
    });
    domain->registerChangeHandler([&](auto&&...) { ++told; }, owner);
    told = 0;
    EXPECT_EQ(makeRoot(domain->defaultScheme())->seed(), 0U);
    EXPECT_EQ(told, 0);
}

TEST_F(ProviderSetupTests, ASetupHoldsNoLock) {
    bool free = false;
    addProvider("icons", std::nullopt,
                [&](const Style& style, auto&&) { free = everyLockIsFree(style); });
    (void)makeRoot();
    EXPECT_TRUE(free);
}

TEST_F(ProviderSetupTests, AProviderMayMakeStylesItself) {
    bool inside = false;
    Style other;
    addProvider("icons", std::nullopt, [&](auto&&...) {
        if (!std::exchange(inside, true)) {
            other = makeRoot();
        }
    });
    EXPECT_EQ(makeRoot()->effectiveValues()->size(), 55U);
    EXPECT_EQ(other->effectiveValues()->size(), 55U);
}

TEST_F(ProviderSetupTests, AProviderThatIsAddedDuringASetupRaisesAndStays) {
    Provider added;
    const auto adding =
        addProvider("adding", std::nullopt, [&](auto&&...) { added = addProvider("added"); });
    EXPECT_THROW((void)makeRoot(), ZelEnumerationMutation);
    EXPECT_EQ(registeredProviders().back(), added);
    ZelStyle::removeDefaultValueProvider(adding);
    expectTheNextSetupWorks();
}

TEST_F(ProviderSetupTests, AProviderThatIsRemovedDuringASetupRaisesAndIsGone) {
    const auto removed = addProvider("removed");
    const auto removing = addProvider("removing", std::nullopt, [&](auto&&...) {
        ZelStyle::removeDefaultValueProvider(removed);
    });
    EXPECT_THROW((void)makeRoot(), ZelEnumerationMutation);
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "removing"}));
    EXPECT_NO_THROW((void)makeRoot()) << "there was nothing left to remove";
    expectTheNextSetupWorks();
}

TEST_F(ProviderSetupTests, AHookThatChangesTheRegistryRaisesBeforeTheNextHookRuns) {
    int hooks = 0;
    const auto adding = addProvider("adding");
    const auto after = addProvider("after");
    after->setWillApplyBlock([&](auto&&...) { ++hooks; });
    adding->setWillApplyBlock([&](auto&&...) { addProvider("added"); });
    EXPECT_THROW((void)makeRoot(), ZelEnumerationMutation);
    EXPECT_EQ(hooks, 0);
    adding->setWillApplyBlock(nullptr);
    adding->setDidApplyBlock([&](auto&&...) { addProvider("added"); });
    EXPECT_THROW((void)makeRoot(), ZelEnumerationMutation);
    EXPECT_EQ(registeredIdentifiers(),
              (Names{"main", "base", "adding", "after", "added", "added"}));
    adding->setDidApplyBlock(nullptr);
    expectTheNextSetupWorks();
}

TEST_F(ProviderSetupTests, AfterAProvidersExceptionTheNextSetupAndNotificationAreRight) {
    const auto domain = ZelStyleDomain::domainForIdentifier("editor");
    const auto scheme = domain->defaultScheme();
    const auto owner = makePlain();
    std::vector<Style> told;
    domain->registerChangeHandler(
        [&](const auto&, const Style& style, auto) { told.push_back(style); }, owner);
    const auto failing = addProvider("failing", std::nullopt,
                                     [](auto&&...) { throw std::runtime_error("no icons"); });
    EXPECT_THROW((void)addStyle(scheme, "main"), std::runtime_error);
    EXPECT_EQ(scheme->styleForIdentifier("main"), nullptr);
    ZelStyle::removeDefaultValueProvider(failing);
    expectTheNextSetupWorks();
    Style style;
    runElsewhere([&] {
        style = addStyle(scheme, "main");
        domain->notifyForStyleChangeOf(nullptr, {});
    });
    EXPECT_EQ(style->effectiveValues()->size(), 55U);
    EXPECT_EQ(told, (std::vector<Style>{nullptr, style}));
}

TEST_F(ProviderSetupTests, ANilProviderRaisesAndIsNotRegistered) {
    EXPECT_THROW(ZelStyle::addDefaultValueProvider(nullptr), ZelInvalidArgument);
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base"}));
    expectTheNextSetupWorks();
}

// In a process of its own, the threads race for the registry's first use.
TEST(ProviderRegistryTests, ThreadsThatAskFirstFindOneRegistryWithBothProvidersInIt) {
    std::vector<const void*> found(4);
    std::vector<std::size_t> sizes(4);
    std::vector<std::function<void()>> tasks;
    for (std::size_t i = 0; i < found.size(); ++i) {
        tasks.emplace_back([&, i] {
            const auto& registry = ZelStyleInternals::_defaultValueProviders();
            found[i] = &registry;
            sizes[i] = registry.size();
        });
    }
    runAtOnce(std::move(tasks));
    EXPECT_EQ(sizes, (std::vector<std::size_t>{2, 2, 2, 2}));
    EXPECT_EQ(found, (std::vector<const void*>(4, found[0])));
}

// In a process of its own, the first provider a client adds finds the built-in ones there.
TEST(ProviderRegistryTests, AClientsFirstProviderStandsBehindTheBuiltInOnes) {
    const auto provider = addProvider("icons");
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "icons"}));
    ZelStyle::removeDefaultValueProvider(provider);
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base"}));
}

} // namespace
} // namespace zeltest
