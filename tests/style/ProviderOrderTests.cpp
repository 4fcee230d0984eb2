// SPDX-License-Identifier: Apache-2.0
#include "tests/style/StyleModel.h"
#include "tests/support/Providers.h"

namespace zeltest {
namespace {

using namespace zel;

using Names = std::vector<std::string>;
using After = std::vector<std::string>;

/// A registry that a test fills by itself; the built-in providers come back afterwards.
class ProviderOrderTests : public StylingTests {
protected:
    Names calls;

    ProviderOrderTests() { removeAllProviders(); }

    /// Registers a provider that records when it runs.
    Provider add(const std::string& identifier,
                 const std::optional<After>& afterRunning = std::nullopt) {
        return addProvider(identifier, afterRunning,
                           [this, identifier](auto&&...) { calls.push_back(identifier); });
    }
    /// Has a provider record each call of its hooks.
    void recordHooks(const Provider& provider) {
        const auto record = [this](std::string_view when) {
            return [this, when](const Style&, const std::shared_ptr<ZelStyleScheme>&,
                                const Provider& receiver, const Provider& running) {
                calls.push_back(receiver->identifier().value_or("") + " " + std::string(when) +
                                " " + running->identifier().value_or(""));
            };
        };
        provider->setWillApplyBlock(record("will"));
        provider->setDidApplyBlock(record("did"));
    }
    static Style makeRoot() { return alloc<ZelStyle>()->initWithIdentifier("main", nullptr); }
    Names run() {
        (void)makeRoot();
        return std::exchange(calls, {});
    }

private:
    ProvidersRestored restored_;
};

TEST_F(ProviderOrderTests, ProvidersAreKeptInTheOrderOfAddingButMainGoesFirst) {
    add("base");
    add("icons");
    EXPECT_EQ(registeredIdentifiers(), (Names{"base", "icons"}));
    add("main");
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "icons"}));
    add("fonts");
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "icons", "fonts"}));
    add("Main");
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "icons", "fonts", "Main"}));
}

TEST_F(ProviderOrderTests, EveryAddedMainGoesToTheFrontAndTheNewestRuns) {
    add("base");
    const auto older = add("main", After{"base"});
    const auto newer =
        makeProvider("main", std::nullopt, [this](auto&&...) { calls.push_back("newer main"); });
    ZelStyle::addDefaultValueProvider(newer);
    EXPECT_EQ(registeredProviders()[0], newer);
    EXPECT_EQ(registeredProviders()[1], older);
    EXPECT_EQ(run(), (Names{"newer main", "base"})) << "it requires nothing";
}

TEST_F(ProviderOrderTests, RequirementsDecideBeforeTheOrderOfTheRegistry) {
    add("base");
    add("main", After{"base"});
    add("icons", After{"main"});
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base", "icons"}));
    EXPECT_EQ(run(), (Names{"base", "main", "icons"}));
}

TEST_F(ProviderOrderTests, AProviderThatRanServesThoseFurtherBackInTheSamePass) {
    add("last", After{"b"}); // waits for the next pass: "b" stands further back
    add("a");
    add("b", After{"a"});
    add("c", After{"a", "b"});
    add("free");
    EXPECT_EQ(run(), (Names{"a", "b", "c", "free", "last"}));
}

TEST_F(ProviderOrderTests, EveryRequirementMustBeMet) {
    add("both", After{"a", "b"});
    add("a");
    add("b", After{"late"});
    add("late");
    EXPECT_EQ(run(), (Names{"a", "late", "b", "both"}));
}

TEST_F(ProviderOrderTests, AProviderWhoseRequirementsAreNeverMetNeverRunsAndTheOthersDo) {
    add("hen", After{"egg"});
    add("egg", After{"hen"});
    add("itself", After{"itself"});
    add("lost", After{"nobody"});
    add("a");
    add("lost too", After{"a", "nobody"});
    add("depends on the lost", After{"lost"});
    add("b");
    EXPECT_EQ(run(), (Names{"a", "b"}));
}

TEST_F(ProviderOrderTests, AProviderAddedTwiceRunsOnceAndIsRemovedAltogether) {
    const auto provider = add("twice");
    ZelStyle::addDefaultValueProvider(provider);
    const auto other = add("other");
    EXPECT_EQ(registeredProviders(), (Providers{provider, provider, other}));
    EXPECT_EQ(run(), (Names{"twice", "other"}));
    ZelStyle::removeDefaultValueProvider(provider);
    EXPECT_EQ(registeredProviders(), Providers{other});
    EXPECT_EQ(run(), Names{"other"});
}

TEST_F(ProviderOrderTests, RemovingGoesByIdentityAndNotByIdentifier) {
    const auto first = add("same");
    const auto second = add("same");
    ZelStyle::removeDefaultValueProvider(first);
    EXPECT_EQ(registeredProviders(), Providers{second});
    ZelStyle::removeDefaultValueProvider(first);
    ZelStyle::removeDefaultValueProvider(nullptr);
    EXPECT_EQ(registeredProviders(), Providers{second});
}

TEST_F(ProviderOrderTests, OfSeveralProvidersOfOneIdentifierTheFirstThatCanRunDoes) {
    const auto record = [this](std::string name) {
        return [this, name](auto&&...) { calls.push_back(name); };
    };
    addProvider("same", After{"b"}, record("waiting"));
    addProvider("same", std::nullopt, record("free"));
    addProvider("same", std::nullopt, record("late"));
    add("b", After{"same"});
    EXPECT_EQ(run(), (Names{"free", "b"})) << "any of them meets the requirement";
}

TEST_F(ProviderOrderTests, EveryRunCallsEveryHookInRegistryOrderAroundTheCallback) {
    recordHooks(add("never", After{"nobody"}));
    recordHooks(add("b", After{"a"}));
    recordHooks(add("a"));
    EXPECT_EQ(run(), (Names{"never will a", "b will a", "a will a", "a", //
                            "never did a", "b did a", "a did a",         //
                            "never will b", "b will b", "a will b", "b", //
                            "never did b", "b did b", "a did b"}));
}

TEST_F(ProviderOrderTests, RequirementsThatAreSetLaterDecideFromThenOn) {
    const auto a = add("a", After{"nobody"});
    add("b");
    EXPECT_EQ(run(), (Names{"b"}));
    a->setRequiredDefaultValueProviders(ZelStyleDefaultValueProvider::Identifiers{"b"});
    EXPECT_EQ(run(), (Names{"b", "a"}));
    a->setRequiredDefaultValueProviders(ZelStyleDefaultValueProvider::Identifiers{});
    EXPECT_EQ(run(), (Names{"a", "b"}));
    a->setRequiredDefaultValueProviders(ZelStyleDefaultValueProvider::Identifiers{"nobody"});
    EXPECT_EQ(run(), (Names{"b"}));
    a->setRequiredDefaultValueProviders(std::nullopt);
    EXPECT_EQ(run(), (Names{"a", "b"}));
}

TEST_F(ProviderOrderTests, OnlyHooksThatAreSetAreCalled) {
    const auto a = add("a");
    const auto b = add("b");
    recordHooks(a);
    recordHooks(b);
    a->setWillApplyBlock(nullptr);
    b->setDidApplyBlock(nullptr);
    EXPECT_EQ(run(), (Names{"b will a", "a", "a did a", "b will b", "b", "a did b"}));
}

TEST_F(ProviderOrderTests, AProviderOfTwoEntriesHasItsHooksCalledForEach) {
    const auto provider = add("twice");
    ZelStyle::addDefaultValueProvider(provider);
    recordHooks(provider);
    EXPECT_EQ(run(), (Names{"twice will twice", "twice will twice", "twice", //
                            "twice did twice", "twice did twice"}));
}

TEST_F(ProviderOrderTests, AProviderWithoutCallbackIsAStepLikeAnyOther) {
    recordHooks(addProvider("empty"));
    add("b", After{"empty"});
    EXPECT_EQ(run(), (Names{"empty will empty", "empty did empty", //
                            "empty will b", "b", "empty did b"}));
}

TEST_F(ProviderOrderTests, AChildTriggersNoProvider) {
    recordHooks(add("a"));
    const auto parent = makeEmptyStyle();
    (void)makeChild(parent);
    (void)makeEmptyStyle();
    EXPECT_EQ(calls, Names{});
}

TEST_F(ProviderOrderTests, WhatAProviderWroteIsReadByTheNextOne) {
    std::vector<Value> read;
    const auto readThenWrite = [&](double level) {
        return [&read, level](const Style& style, auto&&) {
            read.push_back(style->effectiveValueForAttribute("paperColor"));
            style->setValue(gray(level), "paperColor");
            read.push_back(style->effectiveValueForAttribute("paperColor"));
        };
    };
    addProvider("a", std::nullopt, readThenWrite(0.25));
    addProvider("b", std::nullopt, readThenWrite(0.5));
    (void)makeRoot();
    EXPECT_EQ(read, (std::vector<Value>{std::nullopt, gray(0.25), gray(0.25), gray(0.5)}));
}

TEST_F(ProviderOrderTests, AddingAndRemovingChangesNoStyleThereIs) {
    const auto before = makeRoot();
    const auto provider = addProvider("a", std::nullopt, [](const Style& style, auto&&) {
        style->setValue(gray(0.5), "paperColor");
    });
    EXPECT_TRUE(before->effectiveValues()->empty());
    const auto filled = makeRoot();
    ZelStyle::removeDefaultValueProvider(provider);
    EXPECT_EQ(filled->effectiveValueForAttribute("paperColor"), gray(0.5));
    EXPECT_TRUE(makeRoot()->effectiveValues()->empty());
}

} // namespace
} // namespace zeltest
