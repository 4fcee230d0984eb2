// SPDX-License-Identifier: Apache-2.0
#include "tests/qt6/QtFixture.h"

#include <ZelStyleKit/ZelQtModeActions.h>

#include <QMenu>

namespace {

using namespace zeltest;

class QtModeActionsTests : public QtTests {
protected:
    /// Once per process, as ctest runs each test; the language is chosen at the set-up.
    static void setUp(const char* language) {
        qputenv("LC_ALL", language);
        qunsetenv("LANGUAGE");
        zel::ZelStyleManager::setup();
    }
    static const std::shared_ptr<zel::ZelStyleManager>& manager() {
        return zel::ZelStyleManager::sharedStyleManager();
    }
    /// The texts, a star before the one that is marked.
    static std::vector<std::string> shown(const QList<QAction*>& actions) {
        std::vector<std::string> texts;
        for (const QAction* action : actions) {
            texts.push_back((action->isChecked() ? "*" : "") + action->text().toStdString());
        }
        return texts;
    }
};

using Texts = std::vector<std::string>;

TEST_F(QtModeActionsTests, TheActionsAreTheModesInTheirOrder) {
    setUp("C");
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()), (Texts{"Light", "Dark", "*Follow system appearance"}));
    EXPECT_TRUE(actions.isExclusive());
}

TEST_F(QtModeActionsTests, TheNamesAreInTheUsersLanguage) {
    setUp("de_DE.UTF-8");
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()), (Texts{"Hell", "Dunkel", "*Systemdarstellung folgen"}));
}

TEST_F(QtModeActionsTests, ChoosingAnActionChoosesItsModeForGood) {
    setUp("C");
    const zel::ZelQtModeActions actions;
    actions.actions().at(1)->trigger();
    EXPECT_EQ(manager()->activeModeIdentifier(), zel::NSUserDefaultsValue("always-dark"));
    EXPECT_EQ(domain->currentScheme(), domain->darkScheme());
    EXPECT_EQ(shown(actions.actions()), (Texts{"Light", "*Dark", "Follow system appearance"}));
}

TEST_F(QtModeActionsTests, TheMarkStandsAtTheModeThatWasChosenBefore) {
    zel::NSUserDefaults::standardUserDefaults().setObject("always-light",
                                                          "style-manager-active-mode");
    setUp("C");
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()), (Texts{"*Light", "Dark", "Follow system appearance"}));
}

TEST_F(QtModeActionsTests, AMenuThatOpensShowsWhatSomebodyElseHasChosen) {
    setUp("C");
    zel::ZelQtModeActions actions;
    QMenu menu;
    actions.addTo(menu);
    manager()->setActiveModeIdentifier("always-light");
    menu.popup(QPoint());
    EXPECT_EQ(shown(menu.actions()), (Texts{"*Light", "Dark", "Follow system appearance"}));
}

TEST_F(QtModeActionsTests, AMenuThatOpensShowsModesThatWereAddedMeanwhile) {
    setUp("C");
    zel::ZelQtModeActions actions;
    QMenu menu;
    actions.addTo(menu);
    manager()->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier("ink", 1000, "Pen & ink"));
    menu.popup(QPoint());
    EXPECT_EQ(shown(menu.actions()),
              (Texts{"Light", "Dark", "*Follow system appearance", "Pen && ink"}));
}

TEST_F(QtModeActionsTests, AModeWithoutAnIdentifierIsShownAndCannotBeChosen) {
    setUp("C");
    manager()->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier(std::nullopt, 5, "Sepia"));
    manager()->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier("own", 6, std::nullopt));
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()),
              (Texts{"Light", "Sepia", "", "Dark", "*Follow system appearance"}));
    EXPECT_FALSE(actions.actions().at(1)->isEnabled());
    EXPECT_TRUE(actions.actions().at(2)->isEnabled());
    actions.actions().at(1)->trigger();
    EXPECT_EQ(manager()->activeModeIdentifier(), zel::NSUserDefaultsValue("follow-system"));
}

TEST_F(QtModeActionsTests, AModeWithoutAnIdentifierIsMarkedWhereItIsTheOneThatApplies) {
    setUp("C");
    manager()->addMode(
        zel::alloc<zel::ZelStyleManagerMode>()->initWithIdentifier(std::nullopt, 5, "Sepia"));
    manager()->removeMode(manager()->modes().front());
    manager()->setActiveModeIdentifier("");
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()), (Texts{"*Sepia", "Dark", "Follow system appearance"}));
}

TEST_F(QtModeActionsTests, AnUnknownChoiceIsShownAsTheModeThatItMeans) {
    setUp("C");
    manager()->setActiveModeIdentifier("no such mode");
    const zel::ZelQtModeActions actions;
    EXPECT_EQ(shown(actions.actions()).front(), "*Light");
}

} // namespace
