// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/OperationFixture.h"

#include <random>

namespace zeltest {
namespace {

using namespace zel;

TEST_F(OperationTests, AllAreDoneInAChangeHandler) {
    doEach([this] { deliver([this] { now(); }); });
}

TEST_F(OperationTests, AllAreDoneInTheCallOfARegistration) {
    doEach([this] {
        const auto owner = makeStyled();
        domain->registerChangeHandler([this](const auto&, const auto&, auto) { now(); }, owner);
    });
}

TEST_F(OperationTests, AllAreDoneInTheCallOfAHandlerObject) {
    const auto object = makeStyled();
    domain->registerChangeHandler(object);
    object->onStyleChange = [this](const auto&, auto) { now(); };
    doEach([this] { domain->notifyForStyleChangeOf(nullptr, {.force = true}); });
}

TEST_F(OperationTests, AllAreDoneInTheChangesOfAnUpdate) {
    doEach([this] {
        main->updateStyleWithChanges([this](const auto&) {
            now();
            return true;
        });
    });
}

TEST_F(OperationTests, AllAreDoneInTheFirstCallOfAnUpdateObserver) {
    doEach([this] {
        const auto owner = makePlain();
        main->addStyleUpdateObserver([this](const auto&, const auto&, bool) { now(); }, owner,
                                     true);
    });
}

TEST_F(OperationTests, AllAreDoneInAnUpdateObserverAndWhereAChildIsComputed) {
    const auto owner = makePlain();
    main->addStyleUpdateObserver([this](const auto&, const auto&, bool) { now(); }, owner, false);
    doEach([this] { main->updateStyleWithChanges(nullptr); });
    main->removeStyleUpdateObserverWithOwner(owner);
    const auto child = main->inheritedStyleWithChanges([this](const auto&, const auto&) { now(); },
                                                       std::nullopt, nullptr);
    doEach([this] { main->updateStyleWithChanges(nullptr); });
}

TEST_F(OperationTests, AllAreDoneWhereAnOwnerEndsDuringADelivery) {
    doEach([this] {
        auto owner = std::make_shared<Ending>([this] { now(); });
        domain->registerChangeHandler([](const auto&, const auto&, auto) {}, owner);
        deliver([&] { owner.reset(); });
    });
}

TEST_F(OperationTests, AllAreDoneWhereTheOwnerThatIsBeingCalledEnds) {
    doEach([this] {
        auto owner = std::make_shared<Ending>([this] { now(); });
        domain->registerChangeHandler(
            [&owner](const auto&, const auto&, ZelStyleChangeEvent event) {
                if (event == ZelStyleChangeEventChanged) {
                    owner.reset();
                }
            },
            owner);
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        EXPECT_EQ(owner, nullptr);
    });
}

TEST_F(OperationTests, AllAreDoneWhereWhatAHandlerHeldEnds) {
    doEach([this] {
        const auto owner = makeStyled();
        domain->registerChangeHandler(
            [held = std::make_shared<Ending>([this] { now(); })](const auto&, const auto&, auto) {},
            owner);
        deliver([&] { domain->unregisterChangeHandlersWithOwner(owner); });
    });
}

TEST_F(OperationTests, AllAreDoneWhereAValueOfAStyleEnds) {
    doEach([this] {
        world.parent->setValue(ZelAttributeValue(std::make_shared<Ending>([this] { now(); })),
                               "held");
        (void)world.style->effectiveValues(); // has it as well
        world.parent->setValue(std::nullopt, "held");
        (void)world.parent->effectiveValues();
        world.style->updateStyleWithChanges(nullptr); // drops it
    });
}

TEST_F(OperationTests, AllAreDoneWhereAnObserverOfAStyleEndsDuringAnUpdate) {
    doEach([this] {
        auto owner = std::make_shared<Ending>([this] { now(); });
        main->addStyleUpdateObserver([&owner](const auto&, const auto&, bool) { owner.reset(); },
                                     owner, false);
        main->updateStyleWithChanges(nullptr);
    });
}

TEST_F(OperationTests, ThoseForAnyThreadAreDoneByThreadsAtOnce) {
    constexpr int rounds = 30;
    const auto work = [this](unsigned seed) {
        return [this, seed] {
            std::mt19937 random(seed);
            std::vector<const Operation*> operations;
            for (const Operation& each : allOperations()) {
                if (each.onAnyThread) {
                    operations.push_back(&each);
                }
            }
            for (int round = 0; round < rounds; ++round) {
                std::ranges::shuffle(operations, random);
                for (const Operation* each : operations) {
                    each->run(world);
                }
            }
        };
    };
    domain->unregisterChangeHandlersWithOwner(second); // its recorder is of one thread
    runAtOnce({work(1), work(2), work(3)});
    EXPECT_EQ(world.style->parentStyle(), world.parent);
    EXPECT_EQ(ZelStyleDomain::defaultDomain(), domain);
}

} // namespace
} // namespace zeltest
