// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Recorder.h"

#include <algorithm>

namespace zeltest {
namespace {

using namespace zel;

/// Handlers that change styling while they are called.
class ReentryTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyleDomain> domain = ZelStyleDomain::defaultDomain();
    const std::shared_ptr<ZelStyle> plain = addStyle(domain->defaultScheme(), "main");
    const std::shared_ptr<ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    Recorder recorder;
    const std::shared_ptr<Styled> first = makeStyled();
    const std::shared_ptr<Styled> second = makeStyled();

    /// A handler that acts once, when it hears of a change to a style.
    void listen(const std::string& name, const std::shared_ptr<NSObject>& owner,
                std::function<void()> onFirstChange = nullptr) {
        auto acted = std::make_shared<bool>(false);
        domain->registerChangeHandler(
            recorder.handler(name,
                             [this, acted, onFirstChange = std::move(onFirstChange)] {
                                 const bool change = recorder.calls.back().event == 1;
                                 if (change && onFirstChange && !std::exchange(*acted, true)) {
                                     onFirstChange();
                                 }
                             }),
            owner);
        recorder.take();
    }
};

TEST_F(ReentryTests, AHandlerThatSwitchesOnIsCalledAgainAndTheOutdatedStyleIsStoredLast) {
    listen("first", first, [this] { domain->setCurrentScheme(domain->darkScheme()); });
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", light, 1}, {"first", dark, 1}}));
    EXPECT_EQ(first->lastZelStyle(), light->token());
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    domain->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", dark, 1}}));
    EXPECT_EQ(first->lastZelStyle(), dark->token());
}

TEST_F(ReentryTests, AHandlerThatSwitchesBackIsNotCalledForItAndHasTheOutdatedStyleStored) {
    listen("first", first, [this] { domain->setCurrentScheme(domain->defaultScheme()); });
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", light, 1}}));
    EXPECT_EQ(first->lastZelStyle(), light->token());
    domain->notifyForStyleChangeOf(nullptr, {});
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 1}}));
}

TEST_F(ReentryTests, ListenersBehindTheOneThatSwitchedAreResolvedAfresh) {
    listen("first", first, [this] { domain->setCurrentScheme(domain->darkScheme()); });
    listen("second", second);
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"first", light, 1}, {"first", dark, 1}, {"second", dark, 1}}));
    EXPECT_EQ(second->lastZelStyle(), dark->token());
}

TEST_F(ReentryTests, AHandlerObjectMaySwitchOnAsWell) {
    int changes = 0;
    first->onStyleChange = recorder.objectHandler("first", [&] {
        if (recorder.calls.back().event == 1 && ++changes == 1) {
            domain->setCurrentScheme(domain->darkScheme());
        }
    });
    domain->registerChangeHandler(first);
    recorder.take();
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", light, 1}, {"first", dark, 1}}));
    EXPECT_EQ(first->lastZelStyle(), light->token());
}

TEST_F(ReentryTests, AnOwnersLaterHandlersGetTheStyleResolvedBeforeTheSwitch) {
    listen("first", first, [this] { domain->setCurrentScheme(domain->darkScheme()); });
    listen("first again", first);
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"first", plain, 1}, {"first", dark, 1}, {"first again", plain, 1}}));
}

TEST_F(ReentryTests, AHandlerMayUpdateTheStyleItWasCalledWith) {
    listen("first", first,
           [this] { light->updateStyleWithChanges([](const auto&) { return true; }); });
    listen("first again", first);
    listen("second", second);
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", light, 1},
                                           {"first", light, 1},
                                           {"first again", light, 1},
                                           {"second", light, 1}}));
}

TEST_F(ReentryTests, AHandlerMayChangeIdentifiersOfOtherListeners) {
    listen("first", first, [this] { second->setCustomZelStyleSchemeIdentifier("dark"); });
    listen("second", second);
    domain->setCurrentScheme(domain->lightScheme());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", light, 1}, {"second", dark, 1}}));
}

TEST_F(ReentryTests, AHandlerMaySwitchTheSchemeInTheCallOfItsRegistration) {
    domain->registerChangeHandler(
        recorder.handler("first", [this] { domain->setCurrentScheme(domain->darkScheme()); }),
        first);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"first", plain, 0}, {"first", dark, 1}}));
    EXPECT_EQ(first->lastZelStyle(), plain->token());
}

TEST_F(ReentryTests, AHandlerMayReenterItselfManyTimesOver) {
    int depth = 0;
    int deepest = 0;
    domain->registerChangeHandler(
        [&](const auto&, const auto&, auto) {
            deepest = std::max(deepest, ++depth);
            if (depth < 50) {
                domain->notifyForStyleChangeOf(nullptr, {.force = true});
            }
            --depth;
        },
        first);
    EXPECT_EQ(deepest, 50);
}

TEST_F(ReentryTests, AListenerThatItsHostRemovesAsItIsAskedForItsParentIsNotCalled) {
    const auto owner = makeStyled();
    const auto object = makeStyled();
    listen("owner", owner);
    listen("second", second);
    object->onStyleChange = recorder.objectHandler("object");
    domain->registerChangeHandler(object);
    owner->whenAsked = [&] { domain->unregisterChangeHandlersWithOwner(owner); };
    object->whenAsked = [&] { domain->unregisterChangeHandler(object); };
    recorder.take();
    domain->notifyForStyleChangeOf(nullptr, {.force = true});
    EXPECT_EQ(recorder.takeNames(), (Names{"second"}));
}

} // namespace
} // namespace zeltest
