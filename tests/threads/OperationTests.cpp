// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"
#include "tests/support/Watchdog.h"
#include "tests/threads/Operations.h"

#include <algorithm>
#include <random>

namespace zeltest {
namespace {

using namespace zel;

/// An object that does something while it ends.
class Ending : public NSObject {
public:
    explicit Ending(std::function<void()> last) : last_(std::move(last)) {}
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() override { last_(); }

private:
    const std::function<void()> last_;
};

/// Does every operation that docs/threads.md allows there in some place; what was under way goes
/// on, and no lock stays taken.
class OperationTests : public StylingTests {
protected:
    OperationTests() {
        domain->registerChangeHandler(
            [this](const auto&, const auto&, ZelStyleChangeEvent event) { runOnce(event); }, first);
        domain->registerChangeHandler(recorder.handler("second"), second);
    }

    /// Has each operation done by `bringAbout`, which must get to where `now` is called.
    void doEach(const std::function<void()>& bringAbout) {
        for (const Operation& each : allOperations()) {
            SCOPED_TRACE(each.name);
            operation = &each;
            recorder.take();
            bringAbout();
            EXPECT_EQ(operation, nullptr) << "it wasn't done";
            operation = nullptr;
        }
        runElsewhere([this] { // stuck where a lock was left
            main->updateStyleWithChanges(nullptr);
            world.style->updateStyleWithChanges(nullptr);
            domain->notifyForStyleChangeOf(nullptr, {.force = true});
            domain->unregisterChangeHandler(world.object);
            (void)world.manager->activeMode();
            (void)ZelStyleDomain::domainForIdentifier("elsewhere")->darkScheme();
            NSNotificationCenter::defaultCenter().postNotificationName("elsewhere", nullptr);
        });
    }
    void now() {
        if (const Operation* each = std::exchange(operation, nullptr)) {
            each->run(world);
        }
    }
    void runOnce(ZelStyleChangeEvent event) {
        if (event == ZelStyleChangeEventChanged && inHandler) {
            std::exchange(inHandler, nullptr)();
        }
    }
    /// Brings about a delivery in which the first listener's handler does this.
    void deliver(std::function<void()> then) {
        inHandler = std::move(then);
        domain->notifyForStyleChangeOf(nullptr, {.force = true});
        EXPECT_GE(recorder.calls.size(), 1U) << "the second listener wasn't served";
    }

    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> main = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<Styled> first = makeStyled();
    const std::shared_ptr<Styled> second = makeStyled();
    Recorder recorder;
    World world;
    const Operation* operation = nullptr;
    std::function<void()> inHandler;
};

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
