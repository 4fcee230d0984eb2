// SPDX-License-Identifier: Apache-2.0
#include "tests/styleable/StyleableFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace {

using namespace zeltest;

class CustomIdentifiers : public StyleableTests {
protected:
    void SetUp() override {
        object->registerStyleableChangeHandler(recorder.handler("owner"));
        recorder.take();
    }
};

/// The two setters do the same but for what they store.
class EitherIdentifier : public CustomIdentifiers, public testing::WithParamInterface<std::string> {
protected:
    void set(std::optional<std::string_view> identifier) {
        if (GetParam() == "Style") {
            object->setCustomZelStyleIdentifier(identifier);
        } else {
            object->setCustomZelStyleSchemeIdentifier(identifier);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(OfEitherKind, EitherIdentifier, testing::Values("Style", "Scheme"),
                         [](const auto& each) { return each.param; });

TEST_P(EitherIdentifier, AnIdentifierThatChangesTheStyleCallsTheHandlerOnceWithEventOne) {
    const auto dark = addStyle(domain->defaultScheme(), "dark");
    const auto expected = GetParam() == "Style" ? dark : darkMain;
    set("dark");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", expected, 1}}));
    EXPECT_EQ(object->lastZelStyle(), expected->token());
}

TEST_P(EitherIdentifier, AnIdentifierThatLeavesTheStyleAsItIsCallsNobody) {
    set("unknown"); // falls back to the main style
    EXPECT_TRUE(recorder.take().empty());
    set("default");
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(object->notifications, 2);
}

TEST_P(EitherIdentifier, TheSameIdentifierAgainNotifiesAgainAndReachesNobody) {
    set("dark");
    recorder.take();
    EXPECT_EQ(object->notifications, 1);
    set("dark");
    EXPECT_EQ(object->notifications, 2);
    EXPECT_TRUE(recorder.take().empty());
}

TEST_F(CustomIdentifiers, WithoutItsStyleIdentifierAnObjectIsStyledAsIfItNeverHadOne) {
    object->setCustomZelStyleIdentifier("accent");
    recorder.take();
    object->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", main, 1}}));
    EXPECT_EQ(domain->styleFor(object), main);
    EXPECT_EQ(object->customZelStyleIdentifier(), std::nullopt);
}

TEST_F(CustomIdentifiers, WithoutItsSchemeIdentifierAnObjectFollowsTheCurrentSchemeAgain) {
    object->setCustomZelStyleSchemeIdentifier("default");
    recorder.take();
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_TRUE(recorder.take().empty());
    object->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", darkMain, 1}}));
}

TEST_P(EitherIdentifier, SettingNoneNotifiesToo) {
    set(std::nullopt);
    EXPECT_EQ(object->notifications, 1);
    set(std::nullopt);
    EXPECT_EQ(object->notifications, 2);
}

TEST_F(CustomIdentifiers, EverythingBelowTheObjectIsToldAndNothingAboveOrBeside) {
    const auto parent = makeStyled();
    object->parent = parent;
    const auto child = makeStyled(object);
    const auto grandchild = makeStyled(child);
    const auto sibling = makeStyled(parent);
    for (const auto& [owner, name] : {std::pair{grandchild, "grandchild"},
                                      {child, "child"},
                                      {sibling, "sibling"},
                                      {parent, "parent"}}) {
        owner->registerStyleableChangeHandler(recorder.handler(name));
        owner->setLastZelStyle(nullptr); // so that each is due
    }
    recorder.take();
    object->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"owner", accent, 1}, {"grandchild", accent, 1}, {"child", accent, 1}}));
}

TEST_F(CustomIdentifiers, TheNotificationGoesToTheDomainThatTheObjectNames) {
    const auto other = zel::ZelStyleDomain::domainForIdentifier("other");
    const auto otherAccent = addStyle(other->defaultScheme(), "accent");
    const auto elsewhere = makeStyled();
    elsewhere->domainIdentifier = "other";
    other->registerChangeHandler(recorder.handler("its own"), elsewhere);
    domain->registerChangeHandler(recorder.handler("default"), elsewhere);
    elsewhere->setLastZelStyle(nullptr);
    recorder.take();
    elsewhere->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"its own", otherAccent, 1}}));
}

/// Belongs to the domain that its own style identifier names.
class Wanderer : public Target {
public:
    std::optional<std::string> domainIdentifierOfZelStyleable() const override {
        return customZelStyleIdentifier();
    }
};

TEST_F(CustomIdentifiers, TheDomainIsAskedForOnceTheIdentifierIsInPlace) {
    const auto wanderer = zel::alloc<Wanderer>();
    const auto next = zel::ZelStyleDomain::domainForIdentifier("next");
    const auto its = addStyle(next->defaultScheme(), "main");
    const auto named = addStyle(next->defaultScheme(), "next");
    next->registerChangeHandler(recorder.handler("next"), wanderer);
    domain->registerChangeHandler(recorder.handler("default"), wanderer);
    recorder.take();
    wanderer->setCustomZelStyleIdentifier("next");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"next", named, 1}}));
    wanderer->setCustomZelStyleIdentifier(std::nullopt);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"default", main, 1}}));
    EXPECT_EQ(next->styleFor(wanderer), its);
}

TEST_P(EitherIdentifier, TheIdentifierIsInPlaceWhenTheHandlersRunWhichIsBeforeTheSetterReturns) {
    std::optional<std::string> style;
    std::optional<std::string> scheme;
    std::thread::id on;
    const auto child = makeStyled(object);
    child->registerStyleableChangeHandler(recorder.handler("child", [&] {
        style = object->customZelStyleIdentifier();
        scheme = object->customZelStyleSchemeIdentifier();
        on = std::this_thread::get_id();
    }));
    child->setLastZelStyle(nullptr);
    set("dark");
    EXPECT_EQ(on, std::this_thread::get_id());
    EXPECT_TRUE(style == "dark" || scheme == "dark");
}

TEST_P(EitherIdentifier, AHandlersExceptionPassesWithTheIdentifierStoredAndEveryLockFree) {
    const auto child = makeStyled(object);
    bool raise = false;
    child->registerStyleableChangeHandler(recorder.handler("child", [&] {
        if (raise) {
            throw std::runtime_error("no");
        }
    }));
    child->setLastZelStyle(nullptr);
    raise = true;
    EXPECT_THROW(set("dark"), std::runtime_error);
    raise = false;
    EXPECT_TRUE(object->customZelStyleIdentifier() == "dark" ||
                object->customZelStyleSchemeIdentifier() == "dark");
    runElsewhere([&] {
        child->unregisterStyleableChangeHandlers();
        set(std::nullopt);
        set("dark");
    });
    EXPECT_EQ(object->notifications, 2); // the one that was cut short never came so far
}

} // namespace
