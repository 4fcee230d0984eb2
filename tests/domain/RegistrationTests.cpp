// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelExceptions.h>

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

class RegistrationTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Styled> owner = makeStyled();
    const std::shared_ptr<Styled> object = makeStyled();

    void forceAll() { domain->notifyForStyleChangeOf(nullptr, {.force = true}); }
};

TEST_F(RegistrationTests, ANilOwnerKeepsNothingAndCallsNothing) {
    domain->registerChangeHandler(recorder.handler("nobody"), nullptr);
    domain->registerChangeHandler(ZelStyleChangeHandler(), nullptr);
    EXPECT_EQ(ownerCount(*domain), 0U);
    forceAll();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(RegistrationTests, ANilHandlerObjectIsIgnored) {
    domain->registerChangeHandler(std::shared_ptr<NSObject>());
    EXPECT_EQ(objectCount(*domain), 0U);
    domain->unregisterChangeHandler(nullptr);
    domain->unregisterChangeHandlersWithOwner(nullptr);
    forceAll();
}

TEST_F(RegistrationTests, ANewHandlerIsCalledAtOnceWithTheOwnersStyle) {
    owner->setCustomZelStyleSchemeIdentifier("dark");
    std::shared_ptr<NSObject> seen;
    domain->registerChangeHandler(
        [&](const std::shared_ptr<NSObject>& given, const std::shared_ptr<ZelStyle>& style,
            ZelStyleChangeEvent event) {
            seen = given;
            recorder.calls.push_back({"owner", style, event});
        },
        owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 0}}));
    EXPECT_EQ(seen, owner);
    EXPECT_EQ(owner->lastZelStyle(), dark->token());
}

TEST_F(RegistrationTests, AnOwnerIsInItsTableAndNoPrivateLockIsHeldWhenItIsAskedForItsParent) {
    const auto asked = makeStyled();
    std::vector<std::size_t> registered;
    asked->whenAsked = [&] {
        registered.push_back(ownerCount(*domain));
        registered.push_back(objectCount(*domain));
        requireNoPrivateLock();
        EXPECT_FALSE(stylingLockIsFree());
    };
    domain->registerChangeHandler(recorder.handler("owner"), asked);
    EXPECT_EQ(std::exchange(registered, {}), (std::vector<std::size_t>{1, 0}));
    domain->registerChangeHandler(asked);
    EXPECT_EQ(registered, (std::vector<std::size_t>{1, 1}));
}

TEST_F(RegistrationTests, AnOwnerUnregisteredWhileItIsAskedIsToldOnceAndForgotten) {
    const auto asked = makeStyled();
    asked->whenAsked = [&] { domain->unregisterChangeHandlersWithOwner(asked); };
    domain->registerChangeHandler(recorder.handler("owner"), asked);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", plain, 0}}));
    EXPECT_EQ(ownerCount(*domain), 0U);
    forceAll();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(RegistrationTests, ANotificationWhileAnOwnerIsAskedComesBeforeItsFirstCall) {
    const auto asked = makeStyled();
    bool hasNotified = false;
    asked->whenAsked = [&] {
        if (!std::exchange(hasNotified, true)) {
            forceAll();
        }
    };
    domain->registerChangeHandler(recorder.handler("owner"), asked);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", plain, 1}, {"owner", plain, 0}}));
}

TEST_F(RegistrationTests, ANewHandlerIsCalledEvenWhereItsStyleWasDeliveredBefore) {
    owner->setLastZelStyle(plain);
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", plain, 0}}));
}

TEST_F(RegistrationTests, ANewHandlerLeavesTheOwnersEarlierOnesAlone) {
    domain->registerChangeHandler(recorder.handler("first"), owner);
    domain->registerChangeHandler(recorder.handler("second"), owner);
    domain->registerChangeHandler(recorder.handler("third"), owner);
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"first", plain, 0}, {"second", plain, 0}, {"third", plain, 0}}));
    EXPECT_EQ(ownerCount(*domain), 1U);
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second", "third"}));
}

TEST_F(RegistrationTests, TheSameHandlerRegisteredTwiceIsKeptTwice) {
    const auto handler = recorder.handler("owner");
    domain->registerChangeHandler(handler, owner);
    domain->registerChangeHandler(handler, owner);
    recorder.take();
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"owner", "owner"}));
}

TEST_F(RegistrationTests, TheDomainKeepsACopyOfTheHandler) {
    auto handler = recorder.handler("copied");
    domain->registerChangeHandler(handler, owner);
    handler = recorder.handler("assigned later");
    recorder.take();
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"copied"}));
}

TEST_F(RegistrationTests, ANilHandlerForAnOwnerRaisesAndLeavesEverythingAsItWas) {
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    const auto stranger = makePlain();
    EXPECT_THROW(domain->registerChangeHandler(ZelStyleChangeHandler(), owner), ZelInvalidArgument);
    EXPECT_THROW(domain->registerChangeHandler(ZelStyleChangeHandler(), stranger),
                 ZelInvalidArgument);
    EXPECT_TRUE(stylingLockIsFree());
    EXPECT_EQ(ownerCount(*domain), 1U);
    EXPECT_TRUE(stranger->lastZelStyle().isNil());
    recorder.take();
    runElsewhere([this] { forceAll(); });
    EXPECT_EQ(recorder.takeNames(), (Names{"owner"}));
}

TEST_F(RegistrationTests, AHandlerObjectRegisteredTwiceIsKeptOnceAndCalledTwice) {
    object->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(object);
    domain->registerChangeHandler(object);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"object", plain, 0}, {"object", plain, 0}}));
    EXPECT_EQ(objectCount(*domain), 1U);
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"object"}));
    domain->unregisterChangeHandler(object);
    forceAll();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(RegistrationTests, AHandlerObjectIsToldItsOwnStyleAtOnce) {
    object->setCustomZelStyleSchemeIdentifier("dark");
    object->setLastZelStyle(dark);
    object->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(object);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"object", dark, 0}}));
    EXPECT_EQ(object->lastZelStyle(), dark->token());
}

TEST_F(RegistrationTests, AnObjectThatDoesNotAnswerRaisesAndCanBeTakenBack) {
    const auto mute = alloc<NSObject>();
    EXPECT_THROW(domain->registerChangeHandler(mute), std::logic_error);
    EXPECT_TRUE(stylingLockIsFree());
    EXPECT_TRUE(mute->lastZelStyle().isNil());
    domain->unregisterChangeHandler(mute);
    EXPECT_NO_THROW(forceAll());
}

TEST_F(RegistrationTests, UnregisteringLeavesTheLastStyle) {
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    object->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(object);
    domain->unregisterChangeHandlersWithOwner(owner);
    domain->unregisterChangeHandler(object);
    EXPECT_EQ(owner->lastZelStyle(), plain->token());
    EXPECT_EQ(object->lastZelStyle(), plain->token());
}

TEST_F(RegistrationTests, UnregisteringWhatIsNotRegisteredIsHarmless) {
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    domain->unregisterChangeHandlersWithOwner(object);
    domain->unregisterChangeHandler(owner); // the other kind of listener
    domain->unregisterChangeHandler(object);
    recorder.take();
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"owner"}));
}

TEST_F(RegistrationTests, AnObjectMayBeBothKindsOfListener) {
    object->onStyleChange = recorder.objectHandler("as object");
    domain->registerChangeHandler(object);
    domain->registerChangeHandler(recorder.handler("as owner"), object);
    recorder.take();
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"as owner", "as object"}));
    domain->unregisterChangeHandlersWithOwner(object);
    forceAll();
    EXPECT_EQ(recorder.takeNames(), (Names{"as object"}));
}

} // namespace
} // namespace zeltest
