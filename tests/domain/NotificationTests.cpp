// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

namespace zeltest {
namespace {

using namespace zel;

class NotificationTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Styled> first = makeStyled();
    const std::shared_ptr<Styled> second = makeStyled();
    const std::shared_ptr<Styled> object = makeStyled();

    void listen(const std::string& name, const std::shared_ptr<NSObject>& owner) {
        domain->registerChangeHandler(recorder.handler(name), owner);
        recorder.take();
    }
    void listenAsObject(const std::string& name, const std::shared_ptr<Styled>& listener) {
        listener->onStyleChange = recorder.objectHandler(name);
        domain->registerChangeHandler(listener);
        recorder.take();
    }
    void notifyAll(const ZelStyleDelivery& delivery) {
        domain->notifyForStyleChangeOf(nullptr, delivery);
    }
    static void update(const std::shared_ptr<ZelStyle>& style) {
        style->updateStyleWithChanges([](const auto&) { return true; });
    }
};

TEST_F(NotificationTests, ASwitchCallsEveryOwnersFirstHandlerOnceThereAndOnceBack) {
    listen("first", first);
    listen("first again", first);
    listen("second", second);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", dark, 1}, {"second", dark, 1}}));
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 1}, {"second", plain, 1}}));
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(NotificationTests, ASwitchToASchemeWithTheSameMainStyleCallsNobody) {
    listen("first", first);
    domain->setCurrentScheme(domain->lightScheme()); // empty: the default scheme's main style
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(NotificationTests, ASwitchCallsHandlerObjectsToo) {
    listenAsObject("object", object);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"object", dark, 1}}));
}

TEST_F(NotificationTests, AnUpdateReachesEveryHandlerOfItsOwner) {
    listen("first", first);
    listen("first again", first);
    listenAsObject("object", object);
    update(plain);
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"first", plain, 1}, {"first again", plain, 1}, {"object", plain, 1}}));
}

TEST_F(NotificationTests, AnUpdateReachesOwnersOfTheStyleAndOfThoseThatInheritFromIt) {
    const auto child = addChildStyle(plain, "child");
    const auto grandchild = addChildStyle(child, "grandchild");
    first->setCustomZelStyleIdentifier("child");
    second->setCustomZelStyleIdentifier("grandchild");
    const auto other = makeStyled();
    listen("child", first);
    listen("grandchild", second);
    listen("other", other);
    update(child);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"child", child, 1}, {"grandchild", grandchild, 1}}));
    update(plain);
    EXPECT_EQ(recorder.takeNames(), (Names{"child", "grandchild", "other"}));
    update(grandchild);
    EXPECT_EQ(recorder.takeNames(), (Names{"grandchild"}));
}

TEST_F(NotificationTests, AnUpdateReachesOtherOwnersOnlyWhereTheirStyleChanged) {
    const auto cover = addStyle(domain->defaultScheme(), "cover");
    first->setCustomZelStyleIdentifier("cover");
    listen("first", first);
    listen("second", second);
    update(cover);
    EXPECT_EQ(recorder.takeNames(), (Names{"first"}));
    second->setLastZelStyle(dark);
    update(cover);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", cover, 1}, {"second", plain, 1}}));
}

TEST_F(NotificationTests, AnUpdateStaysInTheStylesDomain) {
    const auto other = ZelStyleDomain::domainForIdentifier("editor");
    const auto otherMain = addStyle(other->defaultScheme(), "main");
    listen("first", first);
    other->registerChangeHandler(recorder.handler("other"), second);
    recorder.take();
    update(otherMain);
    EXPECT_EQ(recorder.takeNames(), (Names{"other"}));
}

TEST_F(NotificationTests, AForcedNotificationReachesEveryListener) {
    listen("first", first);
    listen("first again", first);
    listen("second", second);
    listenAsObject("object", object);
    notifyAll({.withEvent = ZelStyleChangeEventChanged, .force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "first again", "second", "object"}));
}

TEST_F(NotificationTests, AStyleFilterNarrowsAForcedNotification) {
    const auto child = addChildStyle(plain, "child");
    first->setCustomZelStyleIdentifier("child");
    listen("first", first);
    listen("second", second);
    listenAsObject("object", object);
    notifyAll({.force = true, .forStyleOnly = child});
    EXPECT_EQ(recorder.takeNames(), (Names{"first"}));
    notifyAll({.force = true, .forStyleOnly = plain});
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second", "object"}));
    notifyAll({.force = true, .forStyleOnly = dark});
    EXPECT_EQ(recorder.takeNames(), Names{});
}

TEST_F(NotificationTests, OutsideTheFilterOnlyAnOwnersFirstHandlerHearsOfItsChange) {
    listen("first", first);
    listen("first again", first);
    first->setLastZelStyle(nullptr);
    notifyAll({.force = true, .forStyleOnly = dark});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 1}}));
}

TEST_F(NotificationTests, AnUnforcedNotificationIgnoresTheFilter) {
    listen("first", first);
    listen("second", second);
    first->setLastZelStyle(nullptr);
    notifyAll({.force = false, .forStyleOnly = dark});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 1}}));
    notifyAll({.force = false, .forStyleOnly = plain});
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(NotificationTests, AnyEventValuePassesThrough) {
    listen("first", first);
    listenAsObject("object", object);
    for (const std::uint64_t event :
         {std::uint64_t{0}, std::uint64_t{2}, std::uint64_t{0x8000000000000001}}) {
        notifyAll({.withEvent = static_cast<ZelStyleChangeEvent>(event), .force = true});
        EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, event}, {"object", plain, event}}));
    }
}

TEST_F(NotificationTests, AnOwnerThatIsNotStyleableGetsTheMainStyle) {
    const auto owner = makePlain();
    owner->setCustomZelStyleSchemeIdentifier("light");
    listen("owner", owner);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}}));
}

TEST_F(NotificationTests, AHandlerObjectThatIsNotStyleableGetsTheMainStyle) {
    const auto listener = makePlain();
    listener->onStyleChange = recorder.objectHandler("listener");
    domain->registerChangeHandler(listener);
    recorder.take();
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"listener", dark, 1}}));
}

TEST_F(NotificationTests, AnOwnerPinnedToASchemeIsNotCalledByASwitch) {
    first->setCustomZelStyleSchemeIdentifier("default");
    listen("first", first);
    listen("second", second);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.takeNames(), (Names{"second"}));
}

TEST_F(NotificationTests, NilAfterNilCallsNobody) {
    const auto empty = ZelStyleDomain::domainForIdentifier("empty");
    empty->registerChangeHandler(recorder.handler("first"), first);
    object->onStyleChange = recorder.objectHandler("object");
    empty->registerChangeHandler(object);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", nullptr, 0}, {"object", nullptr, 0}}));
    empty->notifyForStyleChangeOf(nullptr, {});
    empty->notifyForStyleChangeOf(nullptr, {.force = true, .forStyleOnly = plain});
    empty->setCurrentScheme(empty->darkScheme());
    EXPECT_EQ(recorder.take(), StyleCalls{});
    empty->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", nullptr, 1}, {"object", nullptr, 1}}));
}

TEST_F(NotificationTests, LosingTheStyleIsAChange) {
    listen("first", first);
    domain->defaultScheme()->removeStyle(plain);
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", nullptr, 1}}));
}

TEST_F(NotificationTests, HandlersGetTheirOwner) {
    std::vector<std::shared_ptr<NSObject>> owners;
    for (const auto& each : {first, second}) {
        domain->registerChangeHandler(
            [&](const auto& owner, const auto&, auto) { owners.push_back(owner); }, each);
    }
    notifyAll({.force = true});
    EXPECT_EQ(owners, (std::vector<std::shared_ptr<NSObject>>{first, second, first, second}));
}

TEST_F(NotificationTests, OwnersAreServedInTheOrderInWhichTheyCameThenObjectsInTheirs) {
    const auto third = makePlain();
    const auto otherObject = makeStyled();
    listenAsObject("object 1", object);
    listen("second", second);
    listenAsObject("object 2", otherObject);
    listen("third", third);
    listen("first", first);
    listen("second again", second);
    notifyAll({.force = true});
    EXPECT_EQ(recorder.takeNames(),
              (Names{"second", "second again", "third", "first", "object 1", "object 2"}));
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.takeNames(), (Names{"second", "third", "first", "object 1", "object 2"}));
}

TEST_F(NotificationTests, OneThatLeavesAndComesBackIsServedLast) {
    const auto otherObject = makeStyled();
    listen("first", first);
    listen("second", second);
    listenAsObject("object 1", object);
    listenAsObject("object 2", otherObject);
    domain->unregisterChangeHandlersWithOwner(first);
    domain->unregisterChangeHandler(object);
    listen("first", first);
    listenAsObject("object 1", object);
    notifyAll({.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"second", "first", "object 2", "object 1"}));
}

TEST_F(NotificationTests, TheOrderOutlastsManyThatComeAndGo) {
    std::vector<std::shared_ptr<Plain>> owners;
    for (int i = 0; i < 600; ++i) {
        owners.push_back(makePlain());
        listen(std::to_string(i), owners.back());
    }
    Names expected;
    for (std::size_t i = 0; i < owners.size(); ++i) {
        if (i % 7 == 3) {
            expected.push_back(std::to_string(i));
        } else if (i % 2 == 0) {
            owners[i].reset();
        } else {
            domain->unregisterChangeHandlersWithOwner(owners[i]);
        }
    }
    listen("late", first);
    expected.push_back("late");
    notifyAll({.force = true});
    EXPECT_EQ(recorder.takeNames(), expected);
    EXPECT_EQ(ownerCount(*domain), 87U);
}

TEST_F(NotificationTests, ANotificationToAllVisitsNoAssociatedObjects) {
    const auto stranger = makePlain();
    first->associated = {{stranger, second}};
    listen("first", first);
    listen("second", second);
    notifyAll({.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second"}));
}

} // namespace
} // namespace zeltest
