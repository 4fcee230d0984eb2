// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"
#include "tests/support/Watchdog.h"

#include <ZelStyleKit/ZelMisuse.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <tuple>

namespace zeltest {
namespace {

using namespace zel;

/// What a thread may do while another one does the same or something else.
struct Work {
    const char* name;
    std::function<void()> run;
};

std::shared_ptr<ZelStyleDomain> busyDomain() {
    return ZelStyleDomain::domainForIdentifier("busy");
}

void registerAndEnd() {
    const auto owner = makePlain();
    busyDomain()->registerChangeHandler([](const auto&, const auto&, auto) {}, owner);
}

void registerAndUnregister() {
    const auto owner = makePlain();
    busyDomain()->registerChangeHandler([](const auto&, const auto&, auto) {}, owner);
    busyDomain()->unregisterChangeHandlersWithOwner(owner);
}

void lookUp() {
    const auto domain = busyDomain();
    (void)domain->mainStyle();
    (void)domain->styleForIdentifier("main");
    (void)domain->schemeForIdentifier("made when asked for");
    (void)ZelStyle::forStyleable(makeStyled());
}

void switchScheme() {
    const auto domain = busyDomain();
    domain->setCurrentScheme(domain->currentScheme() == domain->darkScheme()
                                 ? domain->lightScheme()
                                 : domain->darkScheme());
}

void update() {
    if (const auto style = busyDomain()->mainStyle()) {
        style->updateStyleWithChanges([](const auto& updated) {
            updated->setLabelColor(NSColor::blackColor());
            return true;
        });
    }
}

void reset() {
    ZelStyleDomain::domainForIdentifier("_reset");
}

void chooseMode() {
    ZelStyleManager::sharedStyleManager()->setActiveModeIdentifier("always-dark");
    ZelStyleManager::sharedStyleManager()->setActiveModeIdentifier("always-light");
}

const std::array allWork{
    Work{"Update", update},
    Work{"Switch", switchScheme},
    Work{"RegisterAndUnregister", registerAndUnregister},
    Work{"EndAnOwner", registerAndEnd},
    Work{"Reset", reset},
    Work{"ChooseAMode", chooseMode},
    Work{"LookUp", lookUp},
};

class PairTests : public StylingTests,
                  public testing::WithParamInterface<std::tuple<Work, Work>> {};

/// Both threads work, outside of handlers and then inside of them; the watchdog ends the process
/// where one blocks the other for good.
TEST_P(PairTests, NeitherBlocksTheOther) {
    constexpr int rounds = 40;
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<NSUserDefaultsInMemory>());
    const Work first = std::get<0>(GetParam()); // clang 14 captures no structured binding
    const Work second = std::get<1>(GetParam());
    const auto owner = makePlain();
    const auto domain = busyDomain();
    addStyle(domain->lightScheme(), "main");
    addStyle(domain->darkScheme(), "main");
    std::atomic<int> done{0};
    const auto repeat = [&](const Work& work, ZelStyleChangeEvent event) {
        return [&, event] {
            for (int i = 0; i < rounds; ++i) {
                work.run();
                domain->notifyForStyleChangeOf(nullptr, {.withEvent = event, .force = true});
                ++done;
            }
        };
    };
    static thread_local bool isInside = false;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event >= 2 && !std::exchange(isInside, true)) {
                (event == 2 ? first : second).run();
                isInside = false;
            }
        },
        owner);
    runAtOnce({repeat(first, static_cast<ZelStyleChangeEvent>(2)),
               repeat(second, static_cast<ZelStyleChangeEvent>(3))});
    EXPECT_EQ(done, 2 * rounds);
    domain->unregisterChangeHandlersWithOwner(owner);
}

INSTANTIATE_TEST_SUITE_P(OfAll, PairTests,
                         testing::Combine(testing::ValuesIn(allWork), testing::ValuesIn(allWork)),
                         [](const auto& pair) {
                             return std::string(std::get<0>(pair.param).name) + "With" +
                                    std::get<1>(pair.param).name;
                         });

/// A worker's handler that waits for the GUI's thread, which meanwhile does something else.
class HandlerThatWaitsTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> main = addStyle(domain->defaultScheme(), "main");

    /// Runs `task` on another thread while a handler of that domain waits for it.
    void waitInAHandler(const std::shared_ptr<ZelStyleDomain>& of, std::function<void()> task) {
        const auto owner = makePlain();
        of->registerChangeHandler(
            [&](const auto&, const auto&, ZelStyleChangeEvent event) {
                if (event == ZelStyleChangeEventChanged) {
                    runElsewhere(task);
                }
            },
            owner);
        of->notifyForStyleChangeOf(nullptr, {.force = true});
    }
};

TEST_F(HandlerThatWaitsTests, AWidgetEndsInTheSameDomainAndInAnother) {
    for (const auto& of : {domain, ZelStyleDomain::domainForIdentifier("worker")}) {
        auto captured = std::make_shared<int>();
        const std::weak_ptr<int> watched = captured;
        auto widget = alloc<NSView>();
        widget->registerStyleableChangeHandler(
            [kept = std::move(captured)](const auto&, const auto&, auto) {});
        waitInAHandler(of, [&] { widget.reset(); });
        EXPECT_TRUE(watched.expired()) << "what its handler captured goes with it";
    }
}

TEST_F(HandlerThatWaitsTests, AWidgetUnregistersInItsDestructorInTheSameDomain) {
    struct Widget : NSView {
        ~Widget() override { unregisterStyleableChangeHandlers(); }
    };
    std::shared_ptr<NSView> widget = alloc<Widget>();
    widget->registerStyleableChangeHandler([](const auto&, const auto&, auto) {});
    waitInAHandler(domain, [&] { widget.reset(); });
    EXPECT_EQ(widget, nullptr);
}

TEST_F(HandlerThatWaitsTests, AWidgetOfAnotherDomainUnregisters) {
    const auto widget = alloc<NSView>();
    int calls = 0;
    widget->registerStyleableChangeHandler([&](const auto&, const auto&, auto) { ++calls; });
    waitInAHandler(ZelStyleDomain::domainForIdentifier("worker"),
                   [&] { widget->unregisterStyleableChangeHandlers(); });
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(calls, 1);
}

TEST_F(HandlerThatWaitsTests, LookUpsDoNotWait) {
    const auto widget = alloc<NSView>();
    waitInAHandler(domain, [&] {
        EXPECT_EQ(domain->styleFor(widget), main);
        EXPECT_EQ(domain->mainStyle(), main);
        EXPECT_NE(ZelStyleDomain::domainForIdentifier("made meanwhile"), nullptr);
        EXPECT_NE(domain->schemeForIdentifier("made meanwhile"), nullptr);
        main->setLabelColor(NSColor::whiteColor());
        EXPECT_EQ(main->labelColor(), NSColor::whiteColor());
        EXPECT_EQ(widget->customZelStyleIdentifier(), std::nullopt);
    });
}

TEST_F(HandlerThatWaitsTests, AThreadThatWaitsFiveSecondsIsReportedOnceAndGoesOnWaiting) {
    std::atomic<int> reports{0};
    std::atomic<bool> isUpdated{false};
    setMisuseHandler([&](std::string_view message) {
        reports += message.find("five seconds") != std::string_view::npos ? 1 : 0;
    });
    const auto owner = makePlain();
    std::future<void> waiting;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, ZelStyleChangeEvent event) {
            if (event != ZelStyleChangeEventChanged || waiting.valid()) {
                return;
            }
            waiting = std::async(std::launch::async, [&] {
                main->updateStyleWithChanges(nullptr);
                isUpdated = true;
            });
            const auto end = std::chrono::steady_clock::now() + watchdogPatience;
            while (reports == 0 && std::chrono::steady_clock::now() < end) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            EXPECT_FALSE(isUpdated);
        },
        owner);
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    waiting.get();
    setMisuseHandler(nullptr);
    EXPECT_EQ(reports, 1);
    EXPECT_TRUE(isUpdated);
}

} // namespace
} // namespace zeltest
