// SPDX-License-Identifier: Apache-2.0
#include "tests/domain/DomainInternals.h"
#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelExceptions.h>

#include <stdexcept>

namespace zeltest {
namespace {

using namespace zel;

class LockTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const std::shared_ptr<Styled> owner = makeStyled();
    const std::shared_ptr<Styled> object = makeStyled();
    bool failing = false;

    void listenAndFail() {
        domain->registerChangeHandler(
            [this](const auto&, const auto&, auto) {
                if (failing) {
                    throw std::runtime_error("handler");
                }
            },
            owner);
        failing = true;
    }
    void listenAsObjectAndFail() {
        object->onStyleChange = [this](const auto&, auto) {
            if (failing) {
                throw std::runtime_error("object");
            }
        };
        domain->registerChangeHandler(object);
        failing = true;
    }
    /// Everything that takes a lock, on another thread, which is stuck where one was left.
    void expectEverythingToWorkElsewhere() {
        EXPECT_TRUE(stylingLockIsFree());
        failing = false;
        runElsewhere([this] {
            const auto other = makeStyled();
            int calls = 0;
            domain->registerChangeHandler([&](const auto&, const auto&, auto) { ++calls; }, other);
            domain->notifyForStyleChangeOf(nullptr, {.force = true});
            plain->updateStyleWithChanges([](const auto&) { return true; });
            dark->updateStyleWithChanges([](const auto&) { return true; });
            EXPECT_GE(calls, 2);
            domain->unregisterChangeHandlersWithOwner(other);
            domain->registerChangeHandler(other);
            domain->unregisterChangeHandler(other);
            EXPECT_NE(domain->schemeForIdentifier("elsewhere"), nullptr);
            EXPECT_NE(ZelStyleDomain::domainForIdentifier("elsewhere"), nullptr);
            ZelStyleDomain::domainForIdentifier("_reset");
        });
    }
};

TEST_F(LockTests, EveryCallHoldsTheStylingLockAndNoPrivateOne) {
    std::vector<bool> isFree;
    const auto note = [&] {
        requireNoPrivateLock();
        isFree.push_back(stylingLockIsFree());
    };
    domain->registerChangeHandler([&](const auto&, const auto&, auto) { note(); }, owner);
    object->onStyleChange = [&](const auto&, auto) { note(); };
    domain->registerChangeHandler(object);
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    domain->notifyForStyleChangeOf(owner, {.force = true});
    domain->notifyForStyleChangeOf(object, {.force = true});
    EXPECT_EQ(isFree, std::vector<bool>(6, false));
    EXPECT_TRUE(stylingLockIsFree());
}

TEST_F(LockTests, HandlersRunOnTheThreadThatNotifies) {
    std::thread::id seen;
    std::thread::id other;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) { seen = std::this_thread::get_id(); }, owner);
    EXPECT_EQ(seen, std::this_thread::get_id());
    runElsewhere([&] {
        other = std::this_thread::get_id();
        domain->setCurrentScheme(domain->darkScheme());
    });
    EXPECT_EQ(seen, other);
}

TEST_F(LockTests, AHandlerMayReadAndResolve) {
    std::shared_ptr<ZelStyle> resolved;
    std::shared_ptr<ZelStyle> main;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) {
            resolved = domain->styleFor(owner);
            main = domain->mainStyle();
            EXPECT_NE(domain->schemeForIdentifier("made meanwhile"), nullptr);
        },
        owner);
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(resolved, dark);
    EXPECT_EQ(main, dark);
    EXPECT_TRUE(hasScheme(*domain, "made meanwhile"));
}

TEST_F(LockTests, AnExceptionOfAHandlerPassesThroughASwitchAndFreesEveryLock) {
    listenAndFail();
    EXPECT_THROW(domain->setCurrentScheme(domain->darkScheme()), std::runtime_error);
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionOfAHandlerObjectPassesThroughASwitchAndFreesEveryLock) {
    listenAsObjectAndFail();
    EXPECT_THROW(domain->setCurrentScheme(domain->darkScheme()), std::runtime_error);
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionPassesThroughATargetedNotificationAndFreesEveryLock) {
    listenAndFail();
    const auto target = makeStyled();
    target->associated = {{owner}};
    EXPECT_THROW(domain->notifyForStyleChangeOf(target, {.force = true}), std::runtime_error);
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionPassesThroughAnUpdateAndFreesEveryLock) {
    listenAndFail();
    EXPECT_THROW(plain->updateStyleWithChanges([](const auto&) { return true; }),
                 std::runtime_error);
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionPassesThroughNestedNotificationsAndFreesEveryLock) {
    const auto other = makePlain();
    domain->registerChangeHandler(
        [this](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1 && failing) {
                domain->setCurrentScheme(domain->darkScheme());
            }
        },
        other);
    listenAndFail();
    EXPECT_THROW(domain->notifyForStyleChangeOf(nullptr, {.force = true}), std::runtime_error);
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionPassesThroughARegistrationAndFreesEveryLock) {
    failing = true;
    EXPECT_THROW(listenAndFail(), std::runtime_error);
    EXPECT_THROW(listenAsObjectAndFail(), std::runtime_error);
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, AnExceptionEndsTheWalkAtTheListenerThatRaisedIt) {
    Recorder recorder;
    listenAndFail();
    const auto next = makePlain();
    domain->registerChangeHandler(recorder.handler("next"), next);
    recorder.take();
    EXPECT_THROW(domain->setCurrentScheme(domain->darkScheme()), std::runtime_error);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    failing = false;
    domain->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"next", dark, 1}}));
}

TEST_F(LockTests, AListenerRemovedBeforeAnExceptionIsReleased) {
    auto captured = std::make_shared<int>();
    const std::weak_ptr<int> watched = captured;
    domain->registerChangeHandler(
        [this, kept = std::move(captured)](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event == 1) {
                domain->unregisterChangeHandlersWithOwner(owner);
                throw std::runtime_error("handler");
            }
        },
        owner);
    EXPECT_THROW(domain->notifyForStyleChangeOf(nullptr, {.force = true}), std::runtime_error);
    EXPECT_TRUE(watched.expired());
    expectEverythingToWorkElsewhere();
}

TEST_F(LockTests, NilArgumentsRaiseWithEveryLockFree) {
    EXPECT_THROW(domain->registerChangeHandler(ZelStyleChangeHandler(), owner), ZelInvalidArgument);
    EXPECT_THROW((void)domain->schemeForIdentifier(std::nullopt), ZelInvalidArgument);
    expectEverythingToWorkElsewhere();
}

} // namespace
} // namespace zeltest
