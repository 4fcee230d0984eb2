// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/TableChangeFixture.h"

namespace zeltest {
namespace {

using namespace zel;

TEST_F(TableChangeTests, AnOwnerUnregisteredMeanwhileIsNotCalledAnyMore) {
    listen();
    act = [this] { domain->unregisterChangeHandlersWithOwner(after); };
    EXPECT_EQ(force(), (Names{"before", "actor"}));
    EXPECT_EQ(force(), (Names{"before", "actor"}));
}

TEST_F(TableChangeTests, AnOwnerServedAlreadyMayBeUnregistered) {
    listen();
    act = [this] { domain->unregisterChangeHandlersWithOwner(before); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_F(TableChangeTests, AnOwnerThatUnregistersItselfIsNotCalledAnyMore) {
    listen();
    listenAs("actor again", actor);
    recorder.take();
    act = [this] { domain->unregisterChangeHandlersWithOwner(actor); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_F(TableChangeTests, AnOwnerAddedMeanwhileIsCalledByItsRegistrationAlone) {
    listen();
    act = [this] { listenAs("added", added); };
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(
        recorder.take(),
        (StyleCalls{
            {"before", plain, 1}, {"actor", plain, 1}, {"added", plain, 0}, {"after", plain, 1}}));
    EXPECT_EQ(force(), (Names{"before", "actor", "after", "added"}));
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

TEST_F(TableChangeTests, AnOwnerThatEndsMeanwhileIsNotCalledAnyMore) {
    listen();
    act = [this] { after.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor"}));
    EXPECT_EQ(ownerCount(*domain), 2U);
}

TEST_F(TableChangeTests, AnOwnerServedAlreadyMayEnd) {
    listen();
    act = [this] { before.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(ownerCount(*domain), 2U);
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_F(TableChangeTests, AnOwnerMayBeLetGoByItsOwnHandler) {
    listen();
    const std::weak_ptr<Styled> watched = actor;
    act = [this] { actor.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_F(TableChangeTests, AnOwnerMayBeLetGoByItsHandlersRegistration) {
    const std::weak_ptr<Styled> watched = actor;
    std::shared_ptr<NSObject> owner = actor;
    act = [&] {
        owner.reset();
        actor.reset();
    };
    domain->registerChangeHandler(recorder.handler("actor", actOnce()), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"actor", plain, 0}}));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(ownerCount(*domain), 0U);
}

TEST_F(TableChangeTests, AnOwnerMayUnregisterInTheCallOfItsRegistration) {
    act = [this] { domain->unregisterChangeHandlersWithOwner(actor); };
    listenAs("actor", actor);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"actor", plain, 0}}));
    EXPECT_EQ(actor->lastZelStyle(), plain->token());
    EXPECT_EQ(force(), Names{});
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
