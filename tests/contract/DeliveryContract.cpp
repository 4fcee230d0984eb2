// SPDX-License-Identifier: Apache-2.0
// Who is told of a change, and how often.
#include "tests/contract/ContractFixture.h"

namespace {

using namespace zeltest;
using DeliveryContract = Contract;

TEST_F(DeliveryContract, ARegistrationCallsAtOnceWithEventZero) {
    const auto window = toolkit().makeWindow();
    const auto child = toolkit().styleableOf(toolkit().makeChild(window));
    EXPECT_TRUE(child->registerStyleableChangeHandler(recorder.handler("child")));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"child", light, 0}}));
    toolkit().settle();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(DeliveryContract, AWidgetHasOneStyleableForAsLongAsItLives) {
    const auto child = toolkit().makeChild(toolkit().makeWindow());
    const std::weak_ptr<zel::NSObject> styleable = toolkit().styleableOf(child);
    ASSERT_NE(styleable.lock(), nullptr);
    turnDark();
    EXPECT_EQ(toolkit().styleableOf(child), styleable.lock());
    toolkit().destroy(child);
    EXPECT_EQ(styleable.lock(), nullptr);
}

TEST_F(DeliveryContract, ASwitchOfTheSystemReachesEachAffectedListenerOnce) {
    const auto window = listen(toolkit().makeWindow(), "window");
    const auto child = listen(toolkit().makeChild(window), "child");
    listen(toolkit().makeChild(child), "grandchild");
    const auto pinned = listen(toolkit().makeChild(window), "pinned");
    toolkit().setScheme(pinned, "light");
    toolkit().settle();
    recorder.take();
    turnDark();
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"window", dark, 1}, {"child", dark, 1}, {"grandchild", dark, 1}}));
    turnLight();
    EXPECT_EQ(recorder.take(),
              (StyleCalls{{"window", light, 1}, {"child", light, 1}, {"grandchild", light, 1}}));
}

TEST_F(DeliveryContract, ASwitchIsDeliveredByTheEventLoopAndNotBefore) {
    listen(toolkit().makeWindow(), "window");
    makeSystem("NSAppearanceNameDarkAqua");
    EXPECT_EQ(recorder.takeNames(), Names{});
    EXPECT_TRUE(toolkit().runUntil([&] { return !recorder.calls.empty(); }));
    EXPECT_EQ(recorder.takeNames(), Names{"window"});
}

TEST_F(DeliveryContract, NewValuesOfAStyleReachThoseThatItAppliesToOnce) {
    const auto window = listen(toolkit().makeWindow(), "window");
    const auto sidebar = listen(toolkit().makeChild(window), "sidebar");
    toolkit().setStyle(sidebar, "sidebar");
    toolkit().settle();
    recorder.take();
    lightSidebar->updateStyleWithChanges([](const auto& style) {
        style->setBackgroundColor(zel::NSColor::colorWithSRGBRed(1, 0, 0, 1));
        return true;
    });
    toolkit().settle();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"sidebar", lightSidebar, 1}}));
}

TEST_F(DeliveryContract, AWidgetDestroyedDuringADeliveryIsNotCalledAndTheOthersAre) {
    Widget second = nullptr;
    const auto window = toolkit().makeWindow();
    listen(toolkit().makeChild(window), "first", [&] {
        if (second) {
            toolkit().destroy(std::exchange(second, nullptr));
        }
    });
    second = listen(toolkit().makeChild(window), "second");
    listen(toolkit().makeChild(second), "inside the second");
    listen(toolkit().makeChild(window), "third");
    turnDark();
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "third"}));
    turnLight();
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "third"}));
}

TEST_F(DeliveryContract, AHandlerMayDestroyItsOwnWidget) {
    Widget first = nullptr;
    const auto window = toolkit().makeWindow();
    first = toolkit().makeChild(window);
    listen(first, "first", [&] { toolkit().destroy(first); });
    listen(toolkit().makeChild(window), "second");
    turnDark();
    EXPECT_EQ(recorder.takeNames(), (Names{"first", "second"}));
    turnLight();
    EXPECT_EQ(recorder.takeNames(), Names{"second"});
}

TEST_F(DeliveryContract, AWindowDestroyedDuringADeliveryTakesAllThatIsInItAlong) {
    Widget doomed = toolkit().makeWindow();
    const auto window = toolkit().makeWindow();
    listen(window, "window", [&] {
        if (doomed) {
            toolkit().destroy(std::exchange(doomed, nullptr));
        }
    });
    const auto child = listen(toolkit().makeChild(doomed), "child");
    listen(toolkit().makePopup(child), "popup");
    turnDark();
    EXPECT_EQ(recorder.takeNames(), Names{"window"});
}

TEST_F(DeliveryContract, WhatAHandlerHoldsGoesWithItsWidget) {
    const auto window = toolkit().makeWindow();
    const auto child = toolkit().makeChild(window);
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> weak = held;
    toolkit().styleableOf(child)->registerStyleableChangeHandler(
        [held](const auto&, const auto&, auto) {});
    held.reset();
    EXPECT_FALSE(weak.expired());
    toolkit().destroy(child);
    EXPECT_TRUE(weak.expired());
}

} // namespace
