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

TEST_F(NotificationTests, OutsideTheFilterOnlyAnOwnersFirstHandlerHearsOfItsChange) {
    listen("first", first);
    listen("first again", first);
    first->setLastZelStyle(nullptr);
    notifyAll({.force = true, .forStyleOnly = dark});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 1}}));
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

TEST_F(NotificationTests, AListenerThatIsNotStyleableGetsTheMainStyleWhateverItsIdentifiersSay) {
    const auto owner = makePlain();
    const auto listener = makePlain();
    listener->onStyleChange = recorder.objectHandler("listener");
    owner->setCustomZelStyleSchemeIdentifier("default");
    listener->setCustomZelStyleSchemeIdentifier("default");
    listen("owner", owner);
    domain->registerChangeHandler(listener);
    recorder.take();
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", dark, 1}, {"listener", dark, 1}}));
}

TEST_F(NotificationTests, EveryCallHoldsTheStylingLockAndNoPrivateOne) {
    std::vector<bool> isFree;
    const auto note = [&] {
        requireNoPrivateLock();
        isFree.push_back(stylingLockIsFree());
    };
    domain->registerChangeHandler([&](const auto&, const auto&, auto) { note(); }, first);
    object->onStyleChange = [&](const auto&, auto) { note(); };
    domain->registerChangeHandler(object);
    notifyAll({.force = true});
    domain->notifyForStyleChangeOf(first, {.force = true});
    domain->notifyForStyleChangeOf(object, {.force = true});
    EXPECT_EQ(isFree, std::vector<bool>(6, false));
    EXPECT_TRUE(stylingLockIsFree());
}

TEST_F(NotificationTests, HandlersRunOnTheThreadThatNotifies) {
    std::thread::id seen;
    std::thread::id other;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) { seen = std::this_thread::get_id(); }, first);
    EXPECT_EQ(seen, std::this_thread::get_id());
    runElsewhere([&] {
        other = std::this_thread::get_id();
        domain->setCurrentScheme(domain->darkScheme());
    });
    EXPECT_EQ(seen, other);
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
