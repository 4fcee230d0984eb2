// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace zeltest {
namespace {

using namespace zel;

class MainStyleTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::domainForIdentifier("editor");
};

TEST_F(MainStyleTests, AMissingMainStyleIsLookedForAgainEachTime) {
    EXPECT_EQ(domain->mainStyle(), nullptr);
    const auto main = addStyle(domain->defaultScheme(), "main");
    EXPECT_EQ(domain->mainStyle(), main);
}

TEST_F(MainStyleTests, TheCurrentSchemesMainStyleComesBeforeTheDefaultSchemes) {
    const auto plain = addStyle(domain->defaultScheme(), "main");
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(domain->mainStyle(), plain);
    domain->setCurrentScheme(domain->defaultScheme());
    const auto dark = addStyle(domain->darkScheme(), "main");
    domain->setCurrentScheme(domain->darkScheme());
    EXPECT_EQ(domain->mainStyle(), dark);
}

TEST_F(MainStyleTests, ARemovedMainStyleStaysUntilTheNextSwitchAndIsKeptAlive) {
    auto main = addStyle(domain->defaultScheme(), "main");
    const std::weak_ptr<ZelStyle> kept = main;
    EXPECT_EQ(domain->mainStyle(), main);
    domain->defaultScheme()->removeStyle(main);
    EXPECT_EQ(domain->mainStyle(), main);
    main.reset();
    EXPECT_FALSE(kept.expired());
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_TRUE(kept.expired());
    EXPECT_EQ(domain->mainStyle(), nullptr);
}

TEST_F(MainStyleTests, AStyleAddedToTheCurrentSchemeLaterDoesNotDisplaceTheOneFound) {
    domain->setCurrentScheme(domain->lightScheme());
    const auto plain = addStyle(domain->defaultScheme(), "main");
    EXPECT_EQ(domain->mainStyle(), plain);
    const auto light = addStyle(domain->lightScheme(), "main");
    EXPECT_EQ(domain->mainStyle(), plain);
    domain->setCurrentScheme(domain->darkScheme());
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(domain->mainStyle(), light);
}

TEST_F(MainStyleTests, SwitchingToTheCurrentSchemeDropsNothingAndNotifiesNobody) {
    const auto former = addStyle(domain->defaultScheme(), "main");
    Recorder recorder;
    const auto owner = makePlain();
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    recorder.take();
    owner->setLastZelStyle(nullptr); // so that a notification would call the handler
    addStyle(domain->defaultScheme(), "main");
    domain->setCurrentScheme(domain->defaultScheme());
    EXPECT_EQ(domain->mainStyle(), former);
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

// With one processor the two hardly ever meet.
TEST_F(MainStyleTests, WhatAnotherThreadLooksUpDuringASwitchIsNotKeptAfterIt) {
    addStyle(domain->lightScheme(), "main");
    const auto dark = addStyle(domain->darkScheme(), "main");
    std::atomic<bool> isOver = false;
    std::atomic<int> reads = 0;
    std::thread reader([&] {
        for (; !isOver; ++reads) {
            (void)domain->mainStyle();
        }
    });
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
    bool isRight = true;
    for (int switches = 1; isRight && std::chrono::steady_clock::now() < end;
         switches = switches % 20 + 1) {
        for (int i = 0; i < switches; ++i) {
            domain->setCurrentScheme(domain->lightScheme());
            domain->setCurrentScheme(domain->darkScheme());
        }
        for (const int before = reads; reads < before + 2;) { // what it was at is over
            std::this_thread::yield();
        }
        isRight = domain->mainStyle() == dark;
    }
    isOver = true;
    reader.join();
    EXPECT_TRUE(isRight);
}

TEST_F(MainStyleTests, AddingAMainStyleNotifiesNobody) {
    Recorder recorder;
    const auto owner = makePlain();
    domain->registerChangeHandler(recorder.handler("owner"), owner);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"owner", nullptr, 0}}));
    addStyle(domain->defaultScheme(), "main");
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(MainStyleTests, WhatASwitchLetsGoHasEndedWhenListenersAreTold) {
    auto main = addStyle(domain->defaultScheme(), "main");
    const auto child = addChildStyle(main, "child");
    const std::weak_ptr<ZelStyle> formerMain = main;
    EXPECT_EQ(domain->mainStyle(), main);
    domain->defaultScheme()->removeStyle(main);
    main.reset();
    auto loose = alloc<ZelStyleScheme>()->initWithIdentifier("loose", domain);
    const std::weak_ptr<ZelStyleScheme> formerScheme = loose;
    std::vector<bool> ended;
    const auto owner = makePlain();
    addStyle(domain->lightScheme(), "main");
    addStyle(loose, "main");
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) {
            ended.push_back(formerMain.expired() && child->parentStyle() == nullptr);
            ended.push_back(formerScheme.expired());
        },
        owner);
    EXPECT_EQ(std::exchange(ended, {}), (std::vector{false, false}));
    domain->setCurrentScheme(loose);
    loose.reset();
    EXPECT_EQ(std::exchange(ended, {}), (std::vector{true, false}));
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(ended, (std::vector{true, true}));
}

} // namespace
} // namespace zeltest
