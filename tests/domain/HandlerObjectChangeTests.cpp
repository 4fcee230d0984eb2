// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/TableChangeFixture.h"

namespace zeltest {
namespace {

using namespace zel;

using HandlerObjectChangeTests = TableChangeTests;

TEST_F(HandlerObjectChangeTests, AHandlerObjectUnregisteredMeanwhileIsNotCalledAnyMore) {
    listenAsObjects();
    act = [this] { domain->unregisterChangeHandler(after); };
    EXPECT_EQ(force(), (Names{"before", "actor"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectServedAlreadyMayBeUnregistered) {
    listenAsObjects();
    act = [this] { domain->unregisterChangeHandler(before); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectServedAlreadyMayEnd) {
    listenAsObjects();
    act = [this] { before.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(objectCount(*domain), 2U);
    EXPECT_EQ(force(), (Names{"actor", "after"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectMayUnregisterItself) {
    listenAsObjects();
    act = [this] { domain->unregisterChangeHandler(actor); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectAddedMeanwhileIsCalledByItsRegistrationAlone) {
    listenAsObjects();
    act = [this] { listenAsObject("added", added); };
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(
        recorder.take(),
        (StyleCalls{
            {"before", plain, 1}, {"actor", plain, 1}, {"added", plain, 0}, {"after", plain, 1}}));
    EXPECT_EQ(force(), (Names{"before", "actor", "after", "added"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectThatEndsMeanwhileIsNotCalledAnyMore) {
    listenAsObjects();
    act = [this] { after.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor"}));
    EXPECT_EQ(objectCount(*domain), 2U);
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectMayBeLetGoByItsOwnCall) {
    listenAsObjects();
    act = [this] { actor.reset(); };
    EXPECT_EQ(force(), (Names{"before", "actor", "after"}));
    EXPECT_EQ(force(), (Names{"before", "after"}));
}

TEST_F(HandlerObjectChangeTests, AHandlerObjectMayBeLetGoByTheCallOfItsRegistration) {
    const std::weak_ptr<Styled> watched = actor;
    std::shared_ptr<NSObject> object = actor;
    actor->onStyleChange = [&](const auto&, auto) {
        object.reset();
        actor.reset();
    };
    domain->registerChangeHandler(object);
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(objectCount(*domain), 0U);
}

TEST_F(HandlerObjectChangeTests, AHandlerMayRegisterAndUnregisterHandlerObjectsAndTheReverse) {
    listenAs("actor", actor);
    listenAs("before", before);
    listenAsObject("after", after);
    recorder.take();
    act = [this] {
        domain->unregisterChangeHandler(after);
        listenAsObject("added", added);
    };
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    // The set of handler objects is walked after the owners: what came meanwhile is in it.
    EXPECT_EQ(recorder.takeNames(), (Names{"actor", "added", "before", "added"}));
}

} // namespace
} // namespace zeltest
