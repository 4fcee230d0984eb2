// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

/// Listeners that register, unregister and end listeners while a notification runs. `act` is what
/// the one named "actor" does when it is called, once.
class TableChangeTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    Recorder recorder;
    std::shared_ptr<Styled> before = makeStyled();
    std::shared_ptr<Styled> actor = makeStyled();
    std::shared_ptr<Styled> after = makeStyled();
    std::shared_ptr<Styled> added = makeStyled();
    std::function<void()> act;

    std::function<void()> actOnce() {
        return [this] {
            if (const auto acting = std::exchange(act, nullptr)) {
                acting();
            }
        };
    }
    void listenAs(const std::string& name, const std::shared_ptr<NSObject>& owner) {
        domain->registerChangeHandler(recorder.handler(name, name == "actor" ? actOnce() : nullptr),
                                      owner);
    }
    void listenAsObject(const std::string& name, const std::shared_ptr<NSObject>& object) {
        static_cast<Styled&>(*object).onStyleChange =
            recorder.objectHandler(name, name == "actor" ? actOnce() : nullptr);
        domain->registerChangeHandler(object);
    }
    void listen() {
        listenAs("before", before);
        listenAs("actor", actor);
        listenAs("after", after);
        recorder.take();
    }
    Names force() {
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        return recorder.takeNames();
    }
};

/// What holds for owners with handlers and for handler objects, whether or not the library knows
/// their links.
class EitherTableTests : public TableChangeTests,
                         public testing::WithParamInterface<std::tuple<std::string, std::string>> {
protected:
    const bool areOwners = std::get<1>(GetParam()) == "Owners";

    EitherTableTests() {
        if (std::get<0>(GetParam()) == "Known") {
            for (auto* each : {&before, &actor, &after, &added}) {
                *each = alloc<Linked>();
            }
        }
    }

    void enter(const std::string& name, const std::shared_ptr<NSObject>& listener) {
        areOwners ? listenAs(name, listener) : listenAsObject(name, listener);
    }
    void leave(const std::shared_ptr<NSObject>& listener) {
        if (areOwners) {
            domain->unregisterChangeHandlersWithOwner(listener);
        } else {
            domain->unregisterChangeHandler(listener);
        }
    }
    std::size_t count() { return areOwners ? ownerCount(*domain) : objectCount(*domain); }
    /// Enters three and has the middle one do something in a notification; answers who is called.
    Names forceWith(std::function<void()> acting) {
        enter("before", before);
        enter("actor", actor);
        enter("after", after);
        recorder.take();
        act = std::move(acting);
        return force();
    }
};

INSTANTIATE_TEST_SUITE_P(Of, EitherTableTests,
                         testing::Combine(testing::Values("Known", "Asked"),
                                          testing::Values("Owners", "Objects")),
                         [](const auto& each) {
                             return std::get<0>(each.param) + std::get<1>(each.param);
                         });

TEST_P(EitherTableTests, AListenerUnregisteredMeanwhileIsNotCalledAnyMore) {
    EXPECT_EQ(forceWith([this] { leave(after); }), (Names{"before", "actor"}));
    EXPECT_EQ(force(), (Names{"before", "actor"}));
}

TEST_P(EitherTableTests, AListenerServedAlreadyMayBeUnregistered) {
    EXPECT_EQ(forceWith([this] { leave(before); }), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_P(EitherTableTests, AListenerMayUnregisterItself) {
    EXPECT_EQ(forceWith([this] { leave(actor); }), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_P(EitherTableTests, AListenerAddedMeanwhileIsCalledByItsRegistrationAlone) {
    EXPECT_EQ(forceWith([this] {
                  enter("added", added);
                  EXPECT_EQ(recorder.calls.back(), (StyleCall{"added", plain, 0}));
              }),
              (Names{"before", "actor", "added", "after"}));
    EXPECT_EQ(force(), (Names{"before", "actor", "after", "added"}));
}

TEST_P(EitherTableTests, AListenerThatEndsMeanwhileIsNotCalledAnyMore) {
    EXPECT_EQ(forceWith([this] { after.reset(); }), (Names{"before", "actor"}));
    EXPECT_EQ(count(), 2U);
}

TEST_P(EitherTableTests, AListenerServedAlreadyMayEnd) {
    EXPECT_EQ(forceWith([this] { before.reset(); }), (Names{"before", "actor", "after"}));
    EXPECT_EQ(count(), 2U);
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_P(EitherTableTests, AListenerMayBeLetGoByItsOwnCall) {
    const std::weak_ptr<Styled> watched = actor;
    EXPECT_EQ(forceWith([this] { actor.reset(); }), (Names{"before", "actor", "after"}));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_P(EitherTableTests, AListenerMayBeLetGoByTheCallOfItsRegistration) {
    const std::weak_ptr<Styled> watched = actor;
    std::shared_ptr<NSObject> listener = actor;
    act = [&] {
        listener.reset();
        actor.reset();
        EXPECT_FALSE(watched.expired());
    };
    enter("actor", listener);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"actor", plain, 0}}));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(count(), 0U);
}

TEST_P(EitherTableTests, AListenerMayUnregisterInTheCallOfItsRegistration) {
    act = [this] { leave(actor); };
    enter("actor", actor);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"actor", plain, 0}}));
    EXPECT_EQ(actor->lastZelStyle(), plain->token());
    EXPECT_EQ(force(), Names{});
}

TEST_F(TableChangeTests, AHandlerMayRegisterAndUnregisterHandlerObjectsAndTheReverse) {
    listenAs("actor", actor);
    listenAs("before", before);
    listenAsObject("after", after);
    recorder.take();
    act = [this] {
        domain->unregisterChangeHandler(after);
        listenAsObject("added", added);
    };
    // The set of handler objects is walked after the owners: what came meanwhile is in it.
    EXPECT_EQ(force(), (Names{"actor", "added", "before", "added"}));
}

TEST_F(TableChangeTests, AnOwnerThatUnregistersItselfHasNoOtherHandlerCalled) {
    listen();
    listenAs("actor again", actor);
    recorder.take();
    act = [this] { domain->unregisterChangeHandlersWithOwner(actor); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
}

TEST_F(TableChangeTests, AHandlerAddedToAnOwnerToComeIsCalledByItsRegistrationAlone) {
    listen();
    act = [this] { listenAs("after again", after); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after again", "after"}));
    EXPECT_EQ(force(), (Names{"before", "actor", "after", "after again"}));
}

TEST_F(TableChangeTests, AHandlerAddedToTheRunningOwnerIsCalledByItsRegistrationAlone) {
    listen();
    listenAs("actor again", actor);
    recorder.take();
    act = [this] { listenAs("actor at last", actor); };
    EXPECT_EQ(force(), (Names{"before", "actor", "actor at last", "actor again", "after"}));
    EXPECT_EQ(force(), (Names{"before", "actor", "actor again", "actor at last", "after"}));
}

TEST_F(TableChangeTests, AnOwnerThatLeavesAndComesBackMeanwhileIsCalledByItsRegistrationAlone) {
    listen();
    listenAs("actor again", actor);
    recorder.take();
    act = [this] {
        domain->unregisterChangeHandlersWithOwner(actor);
        listenAs("actor anew", actor);
        domain->unregisterChangeHandlersWithOwner(after);
        listenAs("after anew", after);
    };
    EXPECT_EQ(force(), (Names{"before", "actor", "actor anew", "after anew"}));
    EXPECT_EQ(force(), (Names{"before", "actor anew", "after anew"}));
}

TEST_F(TableChangeTests, ATargetMayBeLetGoByAHandlerOfItsNotification) {
    const auto stranger = makeStyled();
    listenAs("actor", actor);
    added->parent = actor;
    listenAs("added", added);
    listenAs("stranger", stranger);
    recorder.take();
    const auto menu = makeStyled();
    listenAs("menu", menu);
    actor->associated = {{menu}};
    recorder.take();
    std::shared_ptr<NSObject> target = actor;
    act = [&] {
        target.reset();
        actor.reset();
        added->parent.reset();
    };
    domain->notifyForStyleChangeOf(target, {.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"actor", "menu"}));
}

TEST_F(TableChangeTests, ADeliverysStyleMayBeLetGoByAHandler) {
    listen();
    ZelStyleDelivery delivery{.force = true,
                              .forStyleOnly = addStyle(domain->lightScheme(), "odd")};
    before->setLastZelStyle(nullptr);
    actor->setLastZelStyle(nullptr);
    act = [&] { delivery.forStyleOnly.reset(); };
    domain->notifyForStyleChangeOf(nullptr, delivery);
    EXPECT_EQ(recorder.takeNames(), (Names{"before", "actor"}));
}

TEST_F(TableChangeTests, ManyComeAndGoWhileAWalkRuns) {
    listen();
    std::vector<std::shared_ptr<Styled>> crowd;
    act = [&] {
        for (int i = 0; i < 500; ++i) {
            crowd.push_back(makeStyled());
            listenAs("crowd", crowd.back());
        }
        recorder.take();
        crowd.resize(20);
        for (int i = 0; i < 500; ++i) { // over and over, so that holes pile up
            listenAs("passing", added);
            domain->unregisterChangeHandlersWithOwner(added);
        }
        recorder.take();
    };
    EXPECT_EQ(force(), (Names{"after"}));
    Names expected{"before", "actor", "after"};
    expected.insert(expected.end(), 20, "crowd");
    EXPECT_EQ(force(), expected);
}

TEST_F(TableChangeTests, AChangeInANestedWalkHoldsForTheOuterOne) {
    listen();
    int calls = 0;
    act = [&] {
        act = [&] {
            ++calls;
            domain->unregisterChangeHandlersWithOwner(after);
            domain->unregisterChangeHandlersWithOwner(actor);
        };
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
    };
    EXPECT_EQ(force(), (Names{"before", "actor", "before", "actor"}));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(force(), (Names{"before"}));
}

TEST_F(TableChangeTests, AnOwnerOfTwoDomainsIsServedByBothAfterItsEntryHasMoved) {
    const auto editor = ZelStyleDomain::domainForIdentifier("editor");
    addStyle(editor->defaultScheme(), "main");
    Recorder calls;
    std::vector<std::shared_ptr<Plain>> leaving;
    for (int i = 0; i < 40; ++i) {
        leaving.push_back(makePlain());
        domain->registerChangeHandler(calls.handler("leaving"), leaving.back());
    }
    const auto owner = makePlain();
    domain->registerChangeHandler(calls.handler("domain"), owner);
    editor->registerChangeHandler(calls.handler("editor"), owner);
    leaving.clear(); // leaves holes, which the next owner's coming closes
    const auto last = makePlain();
    domain->registerChangeHandler(calls.handler("last"), last);
    calls.take();
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(calls.takeNames(), (Names{"domain", "last"}));
    editor->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(calls.takeNames(), Names{"editor"});
    domain->unregisterChangeHandlersWithOwner(owner);
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(calls.takeNames(), Names{"last"});
}

} // namespace
} // namespace zeltest
