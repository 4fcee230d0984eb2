// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/AfterExceptionFixture.h"
#include "tests/support/Providers.h"

#include <ZelStyleKit/ZelExceptions.h>

namespace zeltest {
namespace {

using namespace zel;

TEST_F(AfterExceptionTests, AListenerUnregisteredBeforeItStaysAway) {
    raiseIn("b", [this] { domain->unregisterChangeHandlersWithOwner(a); });
    EXPECT_EQ(calledNext(), (Names{"b", "c"}));
}

TEST_F(AfterExceptionTests, AListenerThatUnregisteredItselfStaysAway) {
    raiseIn("b", [this] { domain->unregisterChangeHandlersWithOwner(b); });
    EXPECT_EQ(calledNext(), (Names{"a", "c"}));
    domain->registerChangeHandler(recorder.handler("b again"), b);
    recorder.take();
    EXPECT_EQ(calledNext(), (Names{"a", "c", "b again"}));
}

TEST_F(AfterExceptionTests, AnOwnerLetGoBeforeItIsForgotten) {
    c->parent = nullptr;
    raiseIn("a", [this] { b.reset(); });
    EXPECT_EQ(calledNext(), (Names{"a", "c"}));
}

TEST_F(AfterExceptionTests, ListenersRegisteredBeforeItAreServedInOrder) {
    const auto d = makeStyled();
    raiseIn("a", [&] {
        domain->registerChangeHandler(recorder.handler("b, second"), b);
        domain->registerChangeHandler(recorder.handler("d"), d);
    });
    EXPECT_EQ(calledNext(), (Names{"a", "b", "b, second", "c", "d"}));
}

TEST_F(AfterExceptionTests, ATargetsNextNotificationReachesWhatStandsBelowItThen) {
    raiseIn(
        "b", [this] { c->parent = nullptr; }, a);
    EXPECT_EQ(calledNext(a), (Names{"a", "b"}));
    raiseIn(
        "a", [this] { c->parent = a; }, a);
    EXPECT_EQ(calledNext(a), (Names{"a", "b", "c"}));
}

TEST_F(AfterExceptionTests, AWalkDownAViewTreeIsWholeAgain) {
    const auto root = alloc<NSView>();
    const auto first = alloc<NSView>();
    const auto second = alloc<NSView>();
    root->addSubview(first);
    root->addSubview(second);
    domain->registerChangeHandler(recorder.handler("first", [this] { act("first"); }), first);
    domain->registerChangeHandler(recorder.handler("second"), second);
    raiseIn(
        "first", [&] { first->addSubview(second); }, root);
    EXPECT_EQ(calledNext(root), (Names{"first", "second"}));
    raiseIn(
        "first", [&] { second->removeFromSuperview(); }, root);
    EXPECT_EQ(calledNext(root), (Names{"first"}));
}

TEST_F(AfterExceptionTests, OfAnOwnersHandlersThoseBehindTheFailureAreServedNextTime) {
    domain->registerChangeHandler(recorder.handler("a, second"), a);
    recorder.take();
    acting = "a";
    EXPECT_THROW(domain->setCurrentScheme(domain->darkScheme()), Failure);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"a", dark, 1}}));
    EXPECT_EQ(a->lastZelStyle(), ZelStyleToken(main)) << "not told: its handler raised";
    domain->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"a", dark, 1}, {"b", dark, 1}, {"c", dark, 1}}));
}

TEST_F(AfterExceptionTests, ANestedFailureThatIsCaughtLeavesTheOuterWalkAlone) {
    addStyle(domain->defaultScheme(), "accent");
    const auto notifyB = [this] {
        if (acting == "b") {
            EXPECT_THROW(b->setCustomZelStyleIdentifier("accent"), Failure);
        }
    };
    domain->registerChangeHandler(recorder.handler("outer", notifyB), a);
    recorder.take();
    acting = "b";
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"a", "outer", "b", "b", "c"}));
    EXPECT_EQ(calledNext(), (Names{"a", "outer", "b", "c"}));
}

TEST_F(AfterExceptionTests, AHandlerThatRaisesAtItsRegistrationIsRegistered) {
    const auto d = makeStyled();
    acting = "d";
    EXPECT_THROW(domain->registerChangeHandler(recorder.handler("d", [this] { act("d"); }), d),
                 Failure);
    recorder.take();
    EXPECT_TRUE(d->lastZelStyle().isNil());
    EXPECT_EQ(calledNext(), (Names{"a", "b", "c", "d"}));
}

TEST_F(AfterExceptionTests, AHandlerObjectThatRaisesEndsTheSwitchAndIsServedNextTime) {
    const auto d = makeStyled();
    d->onStyleChange = recorder.objectHandler("d", [this] { act("d"); });
    domain->registerChangeHandler(d);
    recorder.take();
    acting = "d";
    EXPECT_THROW(domain->setCurrentScheme(domain->darkScheme()), Failure);
    EXPECT_EQ(recorder.takeNames(), (Names{"a", "b", "c", "d"}));
    runElsewhere([this] { domain->notifyForStyleChangeOf(nullptr, {}); });
    EXPECT_EQ(recorder.take(), (StyleCalls{{"d", dark, 1}}));
}

TEST_F(AfterExceptionTests, AListenerUnregisteredBeforeItIsDestroyed) {
    auto captured = std::make_shared<int>();
    const std::weak_ptr<int> watched = captured;
    domain->registerChangeHandler([kept = std::move(captured)](auto&&...) {}, b);
    raiseIn("b", [this] { domain->unregisterChangeHandlersWithOwner(b); });
    EXPECT_TRUE(watched.expired());
}

TEST_F(AfterExceptionTests, AnUpdateWhoseDeliveryRaisedIsDoneAndTheNextOneReachesEverybody) {
    acting = "a";
    EXPECT_THROW(main->updateStyleWithChanges(nullptr), Failure);
    EXPECT_EQ(main->seed(), 1U);
    recorder.take();
    runElsewhere([this] { main->updateStyleWithChanges(nullptr); });
    EXPECT_EQ(main->seed(), 2U);
    EXPECT_EQ(recorder.takeNames(), (Names{"a", "b", "c"}));
}

TEST_F(AfterExceptionTests, ObserversThatRaisedForChangingTheirTableLeaveDeliveryWhole) {
    const auto observer = makePlain();
    main->addStyleUpdateObserver([this](const auto& owner, const auto&,
                                        bool) { main->removeStyleUpdateObserverWithOwner(owner); },
                                 observer, false);
    EXPECT_THROW(main->updateStyleWithChanges(nullptr), ZelEnumerationMutation);
    EXPECT_EQ(recorder.takeNames(), Names{}) << "the domain wasn't told";
    runElsewhere([this] { main->updateStyleWithChanges(nullptr); });
    EXPECT_EQ(main->seed(), 2U);
    EXPECT_EQ(recorder.takeNames(), (Names{"a", "b", "c"}));
}

/// A second domain that follows the system, asked after the default one.
class AfterExceptionInADrainTests : public AfterExceptionTests {
protected:
    AfterExceptionInADrainTests() {
        for (const auto& each : {domain, editor}) {
            each->setSchemeFollowsSystem(true);
        }
        editor->registerChangeHandler(recorder.handler("d", [this] { act("d"); }), d);
        recorder.take();
    }
    /// The system turns dark, a listener raises in the main queue's drain, and nothing is left
    /// there to run.
    void raiseInADrain(const std::string& name) {
        acting = name;
        EXPECT_THROW(makeSystemDark(), Failure);
        EXPECT_EQ(NSMainQueue::mainQueue().drain(), 0U);
        EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    }
    /// The system turns light and dark again, in drains on another thread.
    void expectTheNextSwitchesAreRight(const StyleCalls& whenLight) {
        runElsewhere([] { makeSystemLight(); });
        EXPECT_EQ(recorder.take(), whenLight);
        EXPECT_EQ(domain->currentScheme(), domain->lightScheme());
        EXPECT_EQ(editor->currentScheme(), editor->lightScheme());
        runElsewhere([] { makeSystemDark(); });
        EXPECT_EQ(
            recorder.take(),
            (StyleCalls{{"a", dark, 1}, {"b", dark, 1}, {"c", dark, 1}, {"d", editorDark, 1}}));
        EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
        EXPECT_EQ(editor->currentScheme(), editor->darkScheme());
    }

    const std::shared_ptr<ZelStyleDomain> editor = ZelStyleDomain::domainForIdentifier("editor");
    const std::shared_ptr<ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> editorLight = addStyle(editor->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> editorDark = addStyle(editor->darkScheme(), "main");
    const std::shared_ptr<Styled> d = makeStyled();
};

// The domains behind the one whose handler raised aren't asked, and the notification has been
// posted: until the next one they stay as they are.
TEST_F(AfterExceptionInADrainTests, ADomainBehindTheFailureGoesAlongWithTheNextSwitch) {
    raiseInADrain("a");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"a", dark, 1}}));
    EXPECT_EQ(editor->currentScheme(), editor->lightScheme());
    expectTheNextSwitchesAreRight({}); // nobody has been told of another style than the light one
}

TEST_F(AfterExceptionInADrainTests, ADomainBehindTheFailureCatchesUpWhenItFollowsAnew) {
    raiseInADrain("a");
    recorder.take();
    runElsewhere([this] {
        editor->setSchemeFollowsSystem(false);
        editor->setSchemeFollowsSystem(true);
    });
    EXPECT_EQ(recorder.take(), (StyleCalls{{"d", editorDark, 1}}));
    EXPECT_EQ(editor->currentScheme(), editor->darkScheme());
    expectTheNextSwitchesAreRight({{"d", editorLight, 1}});
}

TEST_F(AfterExceptionInADrainTests, ADomainBeforeTheFailureHasSwitched) {
    raiseInADrain("d");
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"a", dark, 1}, {"b", dark, 1}, {"c", dark, 1}, {"d", editorDark, 1}}));
    EXPECT_EQ(editor->currentScheme(), editor->darkScheme());
    expectTheNextSwitchesAreRight({{"a", light, 1}, {"b", light, 1}, {"c", light, 1}});
}

TEST_F(AfterExceptionTests, AStyleThatAHandlerCouldNotMakeLeavesTheNextNotificationRight) {
    const ProvidersRestored restored;
    Provider added;
    addProvider("adding", std::nullopt, [&](auto&&...) {
        if (!added) {
            added = addProvider("added");
        }
    });
    acting = "b";
    action = [] { (void)alloc<ZelStyle>()->initWithIdentifier("made", nullptr); };
    EXPECT_THROW(domain->notifyForStyleChangeOf(nullptr, {.force = true}), ZelEnumerationMutation);
    EXPECT_EQ(recorder.takeNames(), (Names{"a", "b"}));
    EXPECT_EQ(calledNext(), (Names{"a", "b", "c"}));
    runElsewhere([this] {
        EXPECT_EQ(addStyle(domain->defaultScheme(), "made")->effectiveValues()->size(), 55U);
    });
}

} // namespace
} // namespace zeltest
