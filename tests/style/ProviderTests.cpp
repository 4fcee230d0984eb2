// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Providers.h"

namespace zeltest {
namespace {

using namespace zel;

using Names = std::vector<std::string>;
using Identifiers = ZelStyleDefaultValueProvider::Identifiers;

class ProviderTests : public StylingTests {
protected:
    const Style style = makeEmptyStyle();
    const std::shared_ptr<ZelStyleScheme> scheme =
        alloc<ZelStyleScheme>()->initWithIdentifier("sepia", nullptr);
};

TEST_F(ProviderTests, TheBuiltInProvidersHaveTheirNames) {
    EXPECT_EQ(ZelStyleDefaultValueProviderIdentifierBase, "base");
    EXPECT_EQ(ZelStyleDefaultValueProviderIdentifierMain, "main");
}

TEST_F(ProviderTests, AProviderIsMadeWithItsIdentifierRequirementsAndCallback) {
    int called = 0;
    const auto provider = ZelStyleDefaultValueProvider::providerWithIdentifier(
        "icons", std::vector<std::string>{"main", "base", "main"}, [&](auto&&...) { ++called; });
    EXPECT_EQ(provider->identifier(), "icons");
    EXPECT_EQ(provider->requiredDefaultValueProviders(), (Identifiers{"base", "main"}));
    ASSERT_TRUE(provider->providerBlock());
    provider->providerBlock()(style, scheme);
    EXPECT_EQ(called, 1);
    EXPECT_FALSE(provider->willApplyBlock());
    EXPECT_FALSE(provider->didApplyBlock());
}

TEST_F(ProviderTests, NoListAndAnEmptyListAreNoRequirement) {
    EXPECT_EQ(makeProvider("icons")->requiredDefaultValueProviders(), std::nullopt);
    EXPECT_EQ(makeProvider("icons", std::vector<std::string>{})->requiredDefaultValueProviders(),
              std::nullopt);
}

TEST_F(ProviderTests, TheEmptyStringIsAnIdentifierAndARequirement) {
    const auto provider = makeProvider("", std::vector<std::string>{""});
    EXPECT_EQ(provider->identifier(), "");
    EXPECT_EQ(provider->requiredDefaultValueProviders(), Identifiers{""});
}

TEST_F(ProviderTests, TheHooksAreGivenStyleSchemeReceiverAndTheOtherProvider) {
    const auto provider = makeProvider("icons");
    const auto running = makeProvider("running");
    Names calls;
    const auto hook = [&](std::string name) {
        return [&, name](const Style& each, const std::shared_ptr<ZelStyleScheme>& with,
                         const Provider& receiver, const Provider& applied) {
            EXPECT_EQ(each, style);
            EXPECT_EQ(with, scheme);
            EXPECT_EQ(receiver, provider);
            EXPECT_EQ(applied, running);
            calls.push_back(name);
        };
    };
    provider->setWillApplyBlock(hook("will"));
    provider->setDidApplyBlock(hook("did"));
    provider->willApply(running, style, scheme);
    EXPECT_EQ(calls, Names{"will"});
    provider->didApply(running, style, scheme);
    EXPECT_EQ(calls, (Names{"will", "did"}));
}

TEST_F(ProviderTests, WithoutCallbackAndHooksNothingHappens) {
    const auto provider = makeProvider("icons");
    EXPECT_FALSE(provider->providerBlock());
    EXPECT_NO_THROW(provider->provideDefaultValuesFor(style, scheme));
    EXPECT_NO_THROW(provider->willApply(provider, style, scheme));
    EXPECT_NO_THROW(provider->didApply(provider, style, scheme));
    EXPECT_TRUE(style->effectiveValues()->empty());
}

TEST_F(ProviderTests, EverythingButTheIdentifierCanBeSet) {
    const auto provider = makeProvider("icons", std::vector<std::string>{"base"});
    provider->setRequiredDefaultValueProviders(Identifiers{"main"});
    EXPECT_EQ(provider->requiredDefaultValueProviders(), Identifiers{"main"});
    provider->setRequiredDefaultValueProviders(std::nullopt);
    EXPECT_EQ(provider->requiredDefaultValueProviders(), std::nullopt);
    int called = 0;
    provider->setProviderBlock([&](auto&&...) { ++called; });
    provider->provideDefaultValuesFor(style, scheme);
    EXPECT_EQ(called, 1);
    provider->setProviderBlock(nullptr);
    provider->provideDefaultValuesFor(style, scheme);
    EXPECT_EQ(called, 1);
}

/// Counts its own runs, in itself.
struct Counting {
    std::vector<int>* runs;
    int count = 0;
    void operator()(auto&&...) { runs->push_back(++count); }
};

TEST_F(ProviderTests, WhatACallbackKeepsLastsFromRunToRun) {
    const auto provider = makeProvider("icons");
    std::vector<int> runs;
    provider->setProviderBlock(Counting{&runs});
    provider->setWillApplyBlock(Counting{&runs, 10});
    provider->setDidApplyBlock(Counting{&runs, 20});
    for (int i = 0; i < 2; ++i) {
        provider->willApply(provider, style, scheme);
        provider->provideDefaultValuesFor(style, scheme);
        provider->didApply(provider, style, scheme);
    }
    EXPECT_EQ(runs, (std::vector{11, 1, 21, 12, 2, 22}));
}

TEST_F(ProviderTests, AReadCallbackIsACopyOfWhatItKeepsThen) {
    const auto provider = makeProvider("icons");
    std::vector<int> runs;
    provider->setProviderBlock(Counting{&runs});
    provider->provideDefaultValuesFor(style, scheme);
    const auto copy = provider->providerBlock();
    copy(style, scheme);
    copy(style, scheme);
    provider->provideDefaultValuesFor(style, scheme);
    EXPECT_EQ(runs, (std::vector{1, 2, 3, 2}));
}

TEST_F(ProviderTests, ACallbackThatReplacesItselfRunsToItsEndWithWhatItHolds) {
    const auto provider = makeProvider("icons");
    Names calls;
    const auto held = std::make_shared<std::string>("held");
    const auto replacing = [&calls, held](auto set) {
        return [&calls, held, set](auto&&...) {
            set([&calls](auto&&...) { calls.push_back("next"); });
            calls.push_back(*held);
        };
    };
    provider->setProviderBlock(replacing([&](auto&& next) { provider->setProviderBlock(next); }));
    provider->setWillApplyBlock(replacing([&](auto&& next) { provider->setWillApplyBlock(next); }));
    provider->setDidApplyBlock(replacing([&](auto&& next) { provider->setDidApplyBlock(next); }));
    for (int i = 0; i < 2; ++i) {
        provider->willApply(provider, style, scheme);
        provider->provideDefaultValuesFor(style, scheme);
        provider->didApply(provider, style, scheme);
    }
    EXPECT_EQ(calls, (Names{"held", "held", "held", "next", "next", "next"}));
    EXPECT_EQ(held.use_count(), 2) << "this test's, and the functor's that makes them";
}

TEST_F(ProviderTests, ACallbackMayBeCalledFromItself) {
    const auto provider = makeProvider("icons");
    std::vector<int> depths;
    provider->setProviderBlock([&, depth = 0](auto&&...) mutable {
        depths.push_back(++depth);
        if (depth < 3) {
            provider->provideDefaultValuesFor(style, scheme);
        }
    });
    provider->provideDefaultValuesFor(style, scheme);
    EXPECT_EQ(depths, (std::vector{1, 2, 3}));
}

TEST_F(ProviderTests, TwoThreadsRunOneCallbackAtOnce) {
    const auto provider = makeProvider("icons");
    int runs = 0; // the second run is waited for
    provider->setProviderBlock([&](auto&&...) {
        if (++runs == 1) {
            runElsewhere([&] { provider->provideDefaultValuesFor(style, scheme); });
        }
    });
    provider->provideDefaultValuesFor(style, scheme);
    EXPECT_EQ(runs, 2);
}

TEST_F(ProviderTests, AReplacedCallbackEndsWithTheProvidersLockFree) {
    const auto provider = makeProvider("icons");
    bool wasUsable = false;
    std::shared_ptr<const int> captured(new int(0), [&](const int* content) {
        delete content;
        runElsewhere([&] { wasUsable = !provider->providerBlock(); });
    });
    provider->setProviderBlock([held = std::move(captured)](auto&&...) {});
    ASSERT_FALSE(wasUsable);
    provider->setProviderBlock(nullptr);
    EXPECT_TRUE(wasUsable);
}

TEST_F(ProviderTests, AProviderWhoseInitFailsIsNil) {
    class FailingProvider : public ZelStyleDefaultValueProvider {
        std::shared_ptr<NSObject> init() override { return nullptr; }
    };
    const auto failing = alloc<FailingProvider>();
    EXPECT_EQ(failing->initWithIdentifier("extra", std::nullopt, [](auto&&...) {}), nullptr);
    EXPECT_EQ(failing->identifier(), std::nullopt);
    EXPECT_FALSE(failing->providerBlock());
}

/// A provider whose class does what a block would do.
class Particular : public ZelStyleDefaultValueProvider {
public:
    Names* calls = nullptr;

    void provideDefaultValuesFor(const Style& style,
                                 const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("fills " + style->identifier().value_or("") + " for " +
             withScheme->identifier().value_or(""));
    }
    void willApply(const Provider& provider, const Style& toStyle,
                   const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("will " + named(provider, toStyle, withScheme));
    }
    void didApply(const Provider& provider, const Style& toStyle,
                  const std::shared_ptr<ZelStyleScheme>& withScheme) override {
        note("did " + named(provider, toStyle, withScheme));
    }

private:
    void note(const std::string& what) { calls->push_back("particular " + what); }
    static std::string named(const Provider& provider, const Style& style,
                             const std::shared_ptr<ZelStyleScheme>& scheme) {
        return provider->identifier().value_or("") + " to " + style->identifier().value_or("") +
               " for " + scheme->identifier().value_or("");
    }
};

TEST_F(ProviderTests, ASubclassIsAskedWhereABlockWouldBeCalled) {
    const ProvidersRestored restored;
    removeAllProviders();
    Names calls;
    const auto particular = alloc<Particular>();
    particular->calls = &calls;
    ZelStyle::addDefaultValueProvider(
        particular->initWithIdentifier("particular", std::nullopt, nullptr));
    addProvider("b", std::vector<std::string>{"particular"},
                [&](auto&&...) { calls.push_back("b"); });
    (void)alloc<ZelStyle>()->initWithIdentifier("main", scheme);
    EXPECT_EQ(
        calls,
        (Names{"particular will particular to main for sepia", "particular fills main for sepia",
               "particular did particular to main for sepia", "particular will b to main for sepia",
               "b", "particular did b to main for sepia"}));
}

TEST_F(ProviderTests, AProviderIsMadeOfTheClassThatIsAskedForIt) {
    const std::shared_ptr<Particular> made =
        ZelStyleDefaultValueProvider::providerWithIdentifier<Particular>(
            "particular", std::vector<std::string>{"base"}, nullptr);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->identifier(), "particular");
    EXPECT_EQ(made->requiredDefaultValueProviders(),
              ZelStyleDefaultValueProvider::Identifiers{"base"});
}

} // namespace
} // namespace zeltest
