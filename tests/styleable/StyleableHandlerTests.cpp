// SPDX-License-Identifier: Apache-2.0
#include "tests/styleable/StyleableFixture.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace zeltest;

class StyleableHandlers : public StyleableTests {};

TEST_F(StyleableHandlers, AStyleableObjectRegistersWithItselfAsOwner) {
    std::shared_ptr<zel::NSObject> owner;
    EXPECT_TRUE(object->registerStyleableChangeHandler(
        [&](const std::shared_ptr<zel::NSObject>& each, const std::shared_ptr<zel::ZelStyle>& style,
            zel::ZelStyleChangeEvent event) {
            owner = each;
            EXPECT_EQ(style, main);
            EXPECT_EQ(event, zel::ZelStyleChangeEventInitial);
        }));
    EXPECT_EQ(owner, object);
    EXPECT_EQ(object->lastZelStyle(), main->token());
}

TEST_F(StyleableHandlers, TheHandlerIsRegisteredInTheDomainThatTheObjectNames) {
    const auto other = zel::ZelStyleDomain::domainForIdentifier("other");
    const auto otherMain = addStyle(other->defaultScheme(), "main");
    object->domainIdentifier = "other";
    EXPECT_TRUE(object->registerStyleableChangeHandler(recorder.handler("owner")));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", otherMain, 0}}));
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_TRUE(recorder.take().empty());
    other->setCurrentScheme(other->darkScheme());
    EXPECT_TRUE(recorder.take().empty()); // no other style there
    const auto otherDark = addStyle(other->lightScheme(), "main");
    other->setCurrentScheme(other->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", otherDark, 1}}));
}

TEST_F(StyleableHandlers, ADomainThatDoesNotExistYetIsMadeForTheHandler) {
    object->domainIdentifier = "new";
    EXPECT_TRUE(object->registerStyleableChangeHandler(recorder.handler("owner")));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0}}));
    const auto made = zel::ZelStyleDomain::domainForIdentifier("new");
    const auto style = addStyle(made->darkScheme(), "main");
    made->setCurrentScheme(made->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", style, 1}}));
}

TEST_F(StyleableHandlers, AnObjectThatIsNotStyleableRegistersNothing) {
    const auto plain = makePlain();
    EXPECT_FALSE(plain->registerStyleableChangeHandler(recorder.handler("plain")));
    domain->setCurrentScheme(domain->darkScheme());
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    domain->notifyForStyleChangeOf(plain, {.force = true});
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_FALSE(plain->unregisterStyleableChangeHandlers());
    EXPECT_TRUE(plain->lastZelStyle().isNil());
}

TEST_F(StyleableHandlers, AnObjectThatIsNotStyleableKeepsHandlersRegisteredForItElsewhere) {
    const auto plain = makePlain();
    domain->registerChangeHandler(recorder.handler("plain"), plain);
    EXPECT_FALSE(plain->unregisterStyleableChangeHandlers());
    recorder.take();
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"plain", darkMain, 1}}));
}

TEST_F(StyleableHandlers, HavingTheOperationsDoesNotMakeAnObjectStyleable) {
    class Imitation : public zel::NSObject {
    public:
        static std::optional<std::string> domainIdentifierOfZelStyleable() { return "default"; }
        static std::shared_ptr<zel::NSObject> parentZelStyleable() { return nullptr; }
    };
    const auto imitation = zel::alloc<Imitation>();
    EXPECT_FALSE(imitation->registerStyleableChangeHandler(recorder.handler("imitation")));
    EXPECT_FALSE(imitation->unregisterStyleableChangeHandlers());
    EXPECT_EQ(zel::ZelStyleDomain::domainForStyleable(imitation), nullptr);
    EXPECT_TRUE(recorder.take().empty());
}

TEST_F(StyleableHandlers, AssociatedObjectsAreOptional) {
    class Minimal : public zel::NSObject, public zel::ZelStyleable {
    public:
        const zel::ZelStyleable* asZelStyleable() const noexcept override { return this; }
        std::optional<std::string> domainIdentifierOfZelStyleable() const override {
            return std::nullopt;
        }
        std::shared_ptr<zel::NSObject> parentZelStyleable() const override { return nullptr; }
    };
    const auto minimal = zel::alloc<Minimal>();
    EXPECT_EQ(minimal->associatedZelStyleables(), std::nullopt);
    EXPECT_TRUE(minimal->registerStyleableChangeHandler(recorder.handler("minimal")));
    minimal->setCustomZelStyleIdentifier("accent");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"minimal", main, 0}, {"minimal", accent, 1}}));
}

TEST_F(StyleableHandlers, UnregisteringDropsEveryHandlerOfTheOwnerAndOfNobodyElse) {
    const auto other = makeStyled();
    object->registerStyleableChangeHandler(recorder.handler("first"));
    object->registerStyleableChangeHandler(recorder.handler("second"));
    other->registerStyleableChangeHandler(recorder.handler("other"));
    recorder.take();
    EXPECT_TRUE(object->unregisterStyleableChangeHandlers());
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.takeNames(), Names{"other"});
}

TEST_F(StyleableHandlers, UnregisteringAnswersYesForAStyleableObjectThatHasNoHandlers) {
    EXPECT_TRUE(object->unregisterStyleableChangeHandlers());
    EXPECT_TRUE(zel::alloc<zel::NSView>()->unregisterStyleableChangeHandlers());
    EXPECT_TRUE(zel::alloc<zel::NSViewController>()->unregisterStyleableChangeHandlers());
}

TEST_F(StyleableHandlers, UnregisteringLooksInTheDomainThatTheObjectNamesNow) {
    object->registerStyleableChangeHandler(recorder.handler("owner"));
    recorder.take();
    object->domainIdentifier = "other";
    EXPECT_TRUE(object->unregisterStyleableChangeHandlers());
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.takeNames(), Names{"owner"});
}

TEST_F(StyleableHandlers, AnObjectMayUnregisterInItsDestructor) {
    struct Leaving : zel::NSView {
        std::weak_ptr<int> captured;
        bool* answer = nullptr;
        bool* stillThere = nullptr;
        ~Leaving() override {
            *answer = unregisterStyleableChangeHandlers();
            *stillThere = !captured.expired();
        }
    };
    bool answer = false;
    bool stillThere = true;
    auto leaving = zel::alloc<Leaving>();
    leaving->answer = &answer;
    leaving->stillThere = &stillThere;
    auto captured = std::make_shared<int>(1);
    leaving->captured = captured;
    leaving->registerStyleableChangeHandler([captured](const auto&, const auto&, auto) {});
    captured.reset();
    leaving.reset();
    EXPECT_TRUE(answer);
    EXPECT_FALSE(stillThere) << "the handler and what it holds end there";
}

TEST_F(StyleableHandlers, ANilHandlerRaisesAndEveryLockIsFree) {
    EXPECT_THROW(object->registerStyleableChangeHandler(nullptr), zel::ZelInvalidArgument);
    runElsewhere([&] {
        EXPECT_TRUE(object->registerStyleableChangeHandler(recorder.handler("owner")));
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
    });
    EXPECT_EQ(recorder.takeNames(), (Names{"owner", "owner"}));
}

TEST_F(StyleableHandlers, ANilHandlerOfAnObjectThatIsNotStyleableIsOnlyRefused) {
    EXPECT_FALSE(makePlain()->registerStyleableChangeHandler(nullptr));
}

} // namespace
