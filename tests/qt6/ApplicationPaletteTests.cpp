// SPDX-License-Identifier: Apache-2.0
#include "tests/qt6/QtFixture.h"
#include "tests/support/OtherThread.h"

#include <ZelStyleKit/ZelQtApplicationPalette.h>

#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QShowEvent>
#include <QToolTip>

#include <algorithm>
#include <optional>

namespace {

using namespace zeltest;

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);

class QtApplicationPaletteTests : public QtTests {
protected:
    QtApplicationPaletteTests() { palette.emplace(); }

    static QRgb windowText(const QWidget& widget) {
        return widget.palette().color(QPalette::WindowText).rgba();
    }

    std::optional<zel::ZelQtApplicationPalette> palette;
};

TEST_F(QtApplicationPaletteTests, EveryWidgetHasThePaletteOfTheMainStyle) {
    QWidget window;
    const QLabel label(&window);
    EXPECT_EQ(windowText(label), black);
    makeDark();
    EXPECT_EQ(windowText(label), white);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window).rgba(), qRgb(28, 28, 28));
    makeLight();
    EXPECT_EQ(windowText(label), black);
}

TEST_F(QtApplicationPaletteTests, AWindowMadeOnADarkSystemIsDarkBeforeItIsShown) {
    makeDark();
    const QWidget window;
    EXPECT_EQ(windowText(window), white);
}

TEST_F(QtApplicationPaletteTests, ADialogOfAPinnedWindowHasItsPaletteWhenItIsShown) {
    QWidget window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    QDialog dialog(&window);
    const QLabel label(&dialog);
    dialog.ensurePolished(); // as showing does first of all
    EXPECT_EQ(windowText(dialog), white);
    EXPECT_EQ(windowText(label), white);
}

TEST_F(QtApplicationPaletteTests, AMenuOfAPinnedWidgetHasItsPaletteWhenItIsShown) {
    QWidget window;
    QWidget* const sidebar = new QWidget(&window);
    styleableOf(*sidebar)->setCustomZelStyleSchemeIdentifier("dark");
    QMenu menu(sidebar);
    QMenu unpinned(&window);
    menu.popup(QPoint());
    unpinned.popup(QPoint());
    EXPECT_EQ(windowText(menu), white);
    EXPECT_EQ(windowText(unpinned), black);
}

TEST_F(QtApplicationPaletteTests, AMenuWithoutAParentHasThePaletteOfTheFocusedWidget) {
    QWidget window;
    QWidget* const sidebar = new QWidget(&window);
    QWidget* const content = new QWidget(&window);
    styleableOf(*sidebar)->setCustomZelStyleSchemeIdentifier("dark");
    window.show();
    window.activateWindow();
    QCoreApplication::processEvents();
    QMenu menu;
    for (QWidget* const focused : {sidebar, content, sidebar}) {
        focused->setFocus();
        ASSERT_EQ(QApplication::focusWidget(), focused);
        menu.popup(QPoint());
        EXPECT_EQ(windowText(menu), focused == sidebar ? white : black);
        menu.close();
    }
    zel::ZelQtStyleable::setOwner(menu, content);
    menu.popup(QPoint());
    EXPECT_EQ(windowText(menu), black);
}

TEST_F(QtApplicationPaletteTests, AMenuWhoseOwnerEndsHasThePaletteOfTheMainStyle) {
    auto window = std::make_unique<QWidget>();
    styleableOf(*window)->setCustomZelStyleSchemeIdentifier("dark");
    QMenu menu;
    zel::ZelQtStyleable::setOwner(menu, window.get());
    menu.ensurePolished();
    EXPECT_EQ(windowText(menu), white);
    window.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(windowText(menu), black);
}

TEST_F(QtApplicationPaletteTests, APopupWithTheFocusIsNotTakenForItsOwn) {
    QWidget popup(nullptr, Qt::Popup);
    QWidget* const entry = new QWidget(&popup);
    for (int round = 0; round < 2; ++round) {
        popup.show();
        popup.activateWindow();
        entry->setFocus();
        QCoreApplication::processEvents();
        EXPECT_EQ(styleableOf(popup)->parentZelStyleable(), nullptr);
        ASSERT_EQ(QApplication::focusWidget(), entry);
        QShowEvent again;
        QCoreApplication::sendEvent(&popup, &again); // while the focus is inside
        EXPECT_EQ(styleableOf(popup)->parentZelStyleable(), nullptr);
    }
}

TEST_F(QtApplicationPaletteTests, ATooltipOfAPinnedWidgetHasItsPalette) {
    QWidget window;
    QWidget* const sidebar = new QWidget(&window);
    styleableOf(*sidebar)->setCustomZelStyleSchemeIdentifier("dark");
    QToolTip::showText(QPoint(1, 1), "text", sidebar);
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(
        windows, [](const QWidget* each) { return each->inherits("QTipLabel"); });
    ASSERT_NE(tip, windows.end());
    EXPECT_EQ((*tip)->palette().color(QPalette::ToolTipBase).rgba(), qRgb(44, 44, 44));
    EXPECT_EQ((*tip)->palette().color(QPalette::ToolTipText).rgba(), white);
}

TEST_F(QtApplicationPaletteTests, AWindowIsGivenAPaletteOnlyWhileItsStyleIsAnother) {
    QWidget window;
    window.ensurePolished();
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetPalette));
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(windowText(window), white);
    styleableOf(window)->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(windowText(window), black);
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetPalette));
}

TEST_F(QtApplicationPaletteTests, APinnedWindowStaysWhenTheSystemTurns) {
    QWidget window;
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("light");
    window.ensurePolished();
    makeDark();
    EXPECT_EQ(windowText(window), black);
    makeLight();
    EXPECT_EQ(windowText(window), black);
}

TEST_F(QtApplicationPaletteTests, AWindowThatIsPinnedWhileItIsShownStaysAsWell) {
    QWidget window;
    window.ensurePolished();
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("light");
    makeDark();
    EXPECT_EQ(windowText(window), black);
    styleableOf(window)->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(windowText(window), white);
}

TEST_F(QtApplicationPaletteTests, APaletteOfTheApplicationsOwnStays) {
    QWidget window;
    QPalette own;
    own.setColor(QPalette::WindowText, QColor(1, 2, 3));
    window.setPalette(own);
    window.ensurePolished();
    makeDark();
    EXPECT_EQ(windowText(window), qRgb(1, 2, 3));
    palette.reset();
    EXPECT_EQ(windowText(window), qRgb(1, 2, 3));
}

TEST_F(QtApplicationPaletteTests, AStyleUpdatedOnAnotherThreadIsTakenOverOnTheMainThread) {
    QWidget window;
    window.ensurePolished();
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    updateElsewhere(light, {0.2, 0.6});
    updateElsewhere(dark, {0.4});
    EXPECT_EQ(QApplication::palette().color(QPalette::WindowText).rgba(), black);
    EXPECT_EQ(windowText(window), white);
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::palette().color(QPalette::WindowText).rgba(), qRgb(153, 153, 153));
    EXPECT_EQ(windowText(window), qRgb(102, 102, 102));
}

TEST_F(QtApplicationPaletteTests, WithoutItTheApplicationHasQtsOwnPalette) {
    makeDark();
    QWidget window;
    window.ensurePolished();
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("light");
    EXPECT_TRUE(window.testAttribute(Qt::WA_SetPalette));
    palette.reset();
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetPalette));
    EXPECT_NE(QApplication::palette().color(QPalette::Window).rgba(), qRgb(28, 28, 28));
    makeLight();
    makeDark();
    EXPECT_NE(QApplication::palette().color(QPalette::Window).rgba(), qRgb(28, 28, 28));
}

} // namespace
