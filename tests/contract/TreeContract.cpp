// SPDX-License-Identifier: Apache-2.0
// Where identifiers reach: down a tree, into popups and dialogs, and along when widgets move.
#include "tests/contract/ContractFixture.h"

namespace {

using namespace zeltest;

/// Two windows: "window" with "child" in it and "grandchild" in that, and "other", pinned to the
/// dark scheme, with "guest" in it.
class TreeContract : public Contract {
protected:
    void SetUp() override {
        Contract::SetUp();
        window = listen(toolkit().makeWindow(), "window");
        child = listen(toolkit().makeChild(window), "child");
        grandchild = listen(toolkit().makeChild(child), "grandchild");
        other = listen(toolkit().makeWindow(), "other");
        guest = listen(toolkit().makeChild(other), "guest");
        toolkit().setScheme(other, "dark");
        toolkit().settle();
        recorder.take();
    }
    StyleCalls heard() {
        toolkit().settle();
        return recorder.take();
    }

    Widget window = nullptr;
    Widget child = nullptr;
    Widget grandchild = nullptr;
    Widget other = nullptr;
    Widget guest = nullptr;
};

TEST_F(TreeContract, ASchemeIdentifierReachesItsSubtreeAndNothingElse) {
    toolkit().setScheme(child, "dark");
    EXPECT_EQ(heard(), (StyleCalls{{"child", dark, 1}, {"grandchild", dark, 1}}));
    EXPECT_EQ(styleOf(window), light);
    EXPECT_EQ(styleOf(toolkit().makeChild(grandchild)), dark);
}

TEST_F(TreeContract, AStyleIdentifierReachesItsSubtreeAndNothingElse) {
    toolkit().setStyle(child, "sidebar");
    EXPECT_EQ(heard(), (StyleCalls{{"child", lightSidebar, 1}, {"grandchild", lightSidebar, 1}}));
    EXPECT_EQ(styleOf(window), light);
    EXPECT_EQ(styleOf(toolkit().makeChild(grandchild)), lightSidebar);
}

TEST_F(TreeContract, SchemeAndStyleAreEachFoundByThemselves) {
    toolkit().setStyle(guest, "sidebar");
    EXPECT_EQ(heard(), (StyleCalls{{"guest", darkSidebar, 1}}));
}

TEST_F(TreeContract, TheNearestIdentifierCounts) {
    toolkit().setScheme(grandchild, "light");
    heard();
    toolkit().setScheme(window, "dark");
    EXPECT_EQ(heard(), (StyleCalls{{"window", dark, 1}, {"child", dark, 1}}));
}

TEST_F(TreeContract, APopupFollowsTheWidgetThatOwnsIt) {
    const auto popup = listen(toolkit().makePopup(child), "popup");
    const auto inside = listen(toolkit().makeChild(popup), "inside");
    EXPECT_EQ(styleOf(popup), light);
    toolkit().setScheme(child, "dark");
    EXPECT_EQ(
        heard(),
        (StyleCalls{
            {"child", dark, 1}, {"grandchild", dark, 1}, {"popup", dark, 1}, {"inside", dark, 1}}));
    EXPECT_EQ(styleOf(inside), dark);
}

TEST_F(TreeContract, APopupOfAPinnedWindowStaysWhenTheSystemTurns) {
    const auto popup = listen(toolkit().makePopup(guest), "popup");
    EXPECT_EQ(styleOf(popup), dark);
    turnDark();
    turnLight();
    EXPECT_EQ(styleOf(popup), dark);
    for (const auto& name : recorder.takeNames()) {
        EXPECT_NE(name, "popup");
    }
}

TEST_F(TreeContract, ADialogFollowsTheWindowThatOwnsIt) {
    const auto dialog = listen(toolkit().makeDialog(window), "dialog");
    const auto inside = listen(toolkit().makeChild(dialog), "inside");
    EXPECT_EQ(styleOf(inside), light);
    toolkit().setScheme(window, "dark");
    EXPECT_EQ(heard(), (StyleCalls{{"window", dark, 1},
                                   {"child", dark, 1},
                                   {"grandchild", dark, 1},
                                   {"dialog", dark, 1},
                                   {"inside", dark, 1}}));
    EXPECT_EQ(styleOf(toolkit().makeDialog(other)), dark);
}

TEST_F(TreeContract, AMovedWidgetIsResolvedAnewWithItsSubtreeOnce) {
    toolkit().move(child, other);
    EXPECT_EQ(heard(), (StyleCalls{{"child", dark, 1}, {"grandchild", dark, 1}}));
    toolkit().move(child, window);
    EXPECT_EQ(heard(), (StyleCalls{{"child", light, 1}, {"grandchild", light, 1}}));
}

TEST_F(TreeContract, AMoveThatLeavesTheStyleCallsNobody) {
    const auto neighbour = listen(toolkit().makeChild(window), "neighbour");
    toolkit().move(grandchild, neighbour);
    EXPECT_EQ(heard(), StyleCalls{});
    EXPECT_EQ(styleOf(grandchild), light);
}

TEST_F(TreeContract, AMovedWidgetFollowsItsNewPlaceFromThenOn) {
    toolkit().move(child, other);
    heard();
    toolkit().setScheme(window, "dark");
    EXPECT_EQ(heard(), (StyleCalls{{"window", dark, 1}}));
    toolkit().setStyle(other, "sidebar");
    EXPECT_EQ(heard(), (StyleCalls{{"child", darkSidebar, 1},
                                   {"grandchild", darkSidebar, 1},
                                   {"other", darkSidebar, 1},
                                   {"guest", darkSidebar, 1}}));
}

TEST_F(TreeContract, AMovedWidgetTakesItsPopupAlong) {
    const auto popup = listen(toolkit().makePopup(grandchild), "popup");
    toolkit().move(child, other);
    EXPECT_EQ(heard(),
              (StyleCalls{{"child", dark, 1}, {"grandchild", dark, 1}, {"popup", dark, 1}}));
    EXPECT_EQ(styleOf(popup), dark);
}

TEST_F(TreeContract, AWidgetNobodyListenedToIsPartOfTheTreeAllTheSame) {
    const auto silent = toolkit().makeChild(other);
    const auto below = listen(toolkit().makeChild(silent), "below");
    EXPECT_EQ(styleOf(below), dark);
    toolkit().move(silent, window);
    EXPECT_EQ(heard(), (StyleCalls{{"below", light, 1}}));
}

} // namespace
