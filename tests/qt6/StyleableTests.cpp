// SPDX-License-Identifier: Apache-2.0
#include "tests/qt6/QtFixture.h"

#include <QComboBox>
#include <QDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace {

using namespace zeltest;
using QtStyleableTests = QtTests;

TEST_F(QtStyleableTests, TheParentIsThatOfTheWidget) {
    QWidget window;
    QWidget* const child = new QWidget(&window);
    QWidget* const grandchild = new QWidget(child);
    EXPECT_EQ(styleableOf(*grandchild)->parentZelStyleable(), styleableOf(*child));
    EXPECT_EQ(styleableOf(*child)->parentZelStyleable(), styleableOf(window));
    EXPECT_EQ(styleableOf(window)->parentZelStyleable(), nullptr);
    EXPECT_EQ(styleableOf(*child)->widget(), child);
}

TEST_F(QtStyleableTests, AMenuBarsSubmenusFollowTheirWindow) {
    QMainWindow window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    QMenu* const menu = window.menuBar()->addMenu("File");
    QMenu* const submenu = menu->addMenu("Recent");
    EXPECT_EQ(domain->styleFor(styleableOf(*submenu)), dark);
}

TEST_F(QtStyleableTests, AWindowWithoutAParentFollowsTheOwnerThatItIsGiven) {
    QWidget window;
    QMenu menu;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    styleableOf(menu)->registerStyleableChangeHandler(recorder.handler("menu"));
    recorder.take();
    zel::ZelQtStyleable::setOwner(menu, &window);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"menu", dark, 1}}));
    zel::ZelQtStyleable::setOwner(menu, nullptr);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"menu", light, 1}}));
}

TEST_F(QtStyleableTests, AParentCountsForMoreThanAnOwner) {
    QWidget window;
    QWidget other;
    styleableOf(other)->setCustomZelStyleSchemeIdentifier("dark");
    QDialog dialog(&window);
    zel::ZelQtStyleable::setOwner(dialog, &other);
    EXPECT_EQ(domain->styleFor(styleableOf(dialog)), light);
    dialog.setParent(nullptr);
    EXPECT_EQ(domain->styleFor(styleableOf(dialog)), dark);
}

TEST_F(QtStyleableTests, AnOwnerThatEndsLeavesItsWindowToTheMainStyle) {
    QMenu menu;
    {
        QWidget window;
        QWidget* const inside = new QWidget(&window);
        styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
        zel::ZelQtStyleable::setOwner(menu, inside);
        styleableOf(menu)->registerStyleableChangeHandler(recorder.handler("menu"));
        EXPECT_EQ(recorder.take(), (StyleCalls{{"menu", dark, 0}}));
    }
    EXPECT_EQ(recorder.take(), StyleCalls{}); // not in the midst of the owner's end
    EXPECT_EQ(styleableOf(menu)->parentZelStyleable(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"menu", light, 1}}));
}

TEST_F(QtStyleableTests, AFormerOwnersEndConcernsNobody) {
    QWidget window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    QMenu menu;
    auto former = std::make_unique<QWidget>();
    zel::ZelQtStyleable::setOwner(menu, former.get());
    zel::ZelQtStyleable::setOwner(menu, &window);
    former.reset();
    EXPECT_EQ(styleableOf(menu)->parentZelStyleable(), styleableOf(window));
}

TEST_F(QtStyleableTests, AWindowThatEndsWithItsOwnerIsToldNothing) {
    auto menu = std::make_unique<QMenu>();
    auto window = std::make_unique<QWidget>();
    styleableOf(*window)->setCustomZelStyleSchemeIdentifier("dark");
    zel::ZelQtStyleable::setOwner(*menu, window.get());
    styleableOf(*menu)->registerStyleableChangeHandler(recorder.handler("menu"));
    recorder.take();
    window.reset();
    menu.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(QtStyleableTests, AnOwnerInsideTheWindowItselfIsNone) {
    QWidget window;
    QWidget* const inside = new QWidget(&window);
    for (QWidget* const owner : {inside, &window}) {
        zel::ZelQtStyleable::setOwner(window, owner);
        EXPECT_EQ(styleableOf(window)->parentZelStyleable(), nullptr);
    }
    EXPECT_EQ(styleableOf(*inside)->parentZelStyleable(), styleableOf(window));
    EXPECT_EQ(domain->styleFor(styleableOf(*inside)), light);
}

TEST_F(QtStyleableTests, OfWindowsThatOwnEachOtherTheFirstCounts) {
    QWidget first;
    QWidget second;
    QWidget* const inFirst = new QWidget(&first);
    QWidget* const inSecond = new QWidget(&second);
    zel::ZelQtStyleable::setOwner(first, inSecond);
    zel::ZelQtStyleable::setOwner(second, inFirst);
    EXPECT_EQ(styleableOf(first)->parentZelStyleable(), styleableOf(*inSecond));
    EXPECT_EQ(styleableOf(second)->parentZelStyleable(), nullptr);
    styleableOf(second)->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(domain->styleFor(styleableOf(*inFirst)), dark);
}

TEST_F(QtStyleableTests, AnOwnerThatMovesIntoItsWindowIsOneNoMore) {
    QWidget window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    QMenu menu;
    QWidget* const owner = new QWidget(new QWidget(&window));
    zel::ZelQtStyleable::setOwner(menu, owner);
    styleableOf(menu)->registerStyleableChangeHandler(recorder.handler("menu"));
    styleableOf(*owner)->registerStyleableChangeHandler(recorder.handler("owner"));
    recorder.take();
    owner->parentWidget()->setParent(&menu);
    EXPECT_EQ(styleableOf(menu)->parentZelStyleable(), nullptr);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"menu", light, 1}, {"owner", light, 1}}));
}

TEST_F(QtStyleableTests, AStyleableThatIsHeldPastItsWidgetsEndHearsNothing) {
    auto window = std::make_unique<QWidget>();
    const auto styleable = styleableOf(*new QWidget(window.get()));
    styleable->registerStyleableChangeHandler(recorder.handler("child"));
    recorder.take();
    window.reset();
    EXPECT_EQ(styleable->widget(), nullptr);
    EXPECT_EQ(styleable->parentZelStyleable(), nullptr);
    makeDark();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(QtStyleableTests, AHandlerMayEndTheWidgetThatIsBeingMoved) {
    QWidget window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    QPointer<QWidget> child = new QWidget;
    styleableOf(*child)->registerStyleableChangeHandler([&](const auto&, const auto& style, auto) {
        if (style == dark) {
            child->deleteLater();
        }
    });
    child->setParent(&window);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(child.isNull());
}

TEST_F(QtStyleableTests, ManyWidgetsComeAndGoWithoutATrace) {
    for (int round = 0; round < 3; ++round) {
        QWidget window;
        std::vector<std::weak_ptr<zel::NSObject>> styleables;
        for (int count = 0; count < 200; ++count) {
            QWidget* const child = new QComboBox(&window);
            styleableOf(*child)->registerStyleableChangeHandler(recorder.handler("child"));
            styleables.push_back(styleableOf(*child));
        }
        qDeleteAll(window.findChildren<QComboBox*>());
        for (const auto& each : styleables) {
            EXPECT_TRUE(each.expired());
        }
    }
}

} // namespace
