// SPDX-License-Identifier: Apache-2.0
#include "tests/qt6/QtFixture.h"
#include "tests/support/OtherThread.h"

#include <ZelStyleKit/ZelQtPalette.h>

#include <QPushButton>

namespace {

using namespace zeltest;
using zel::ZelQtPalette;

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);

class QtPaletteTests : public QtTests {
protected:
    static QRgb windowText(const QWidget& widget) {
        return widget.palette().color(QPalette::WindowText).rgba();
    }
    /// How often a widget's palette changes from here on.
    class Changes : public QObject {
    public:
        explicit Changes(QWidget& widget) { widget.installEventFilter(this); }
        mutable int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::PaletteChange ? 1 : 0;
            return false;
        }
    };
};

TEST_F(QtPaletteTests, ThePaletteOfTheLightStyle) {
    const QPalette palette = ZelQtPalette::paletteWithStyle(light);
    EXPECT_EQ(palette.color(QPalette::Window).rgba(), qRgb(236, 236, 236));
    EXPECT_EQ(palette.color(QPalette::Base).rgba(), white);
    EXPECT_EQ(palette.color(QPalette::Text).rgba(), black);
    EXPECT_EQ(palette.color(QPalette::Highlight).rgba(), qRgb(0, 122, 255));
    EXPECT_EQ(palette.color(QPalette::HighlightedText).rgba(), white);
    EXPECT_EQ(palette.color(QPalette::Inactive, QPalette::Highlight).rgba(), qRgb(0, 122, 255));
    EXPECT_EQ(palette.color(QPalette::Disabled, QPalette::Text).rgba(), qRgba(61, 61, 61, 77));
}

TEST_F(QtPaletteTests, ThePaletteOfTheDarkStyle) {
    const QPalette palette = ZelQtPalette::paletteWithStyle(dark);
    EXPECT_EQ(palette.color(QPalette::Window).rgba(), qRgb(28, 28, 28));
    EXPECT_EQ(palette.color(QPalette::Base).rgba(), black);
    EXPECT_EQ(palette.color(QPalette::Button).rgba(), qRgb(44, 44, 44));
    EXPECT_EQ(palette.color(QPalette::ButtonText).rgba(), white);
    EXPECT_EQ(palette.color(QPalette::Mid).rgba(), qRgb(84, 84, 84));
}

TEST_F(QtPaletteTests, WithoutAStyleItIsQtsOwn) {
    EXPECT_EQ(ZelQtPalette::paletteWithStyle(nullptr), QPalette());
}

TEST_F(QtPaletteTests, AnAttributeThatAStyleLacksLeavesItsRoleAlone) {
    light->setAccentColor(std::nullopt);
    const QPalette palette = ZelQtPalette::paletteWithStyle(light);
    EXPECT_EQ(palette.color(QPalette::Highlight), QPalette().color(QPalette::Highlight));
    EXPECT_EQ(palette.color(QPalette::Text).rgba(), black);
}

TEST_F(QtPaletteTests, ThePaletteIsMadeAnewOnlyWhenTheStyleChanges) {
    const QPalette first = ZelQtPalette::paletteWithStyle(light);
    (void)ZelQtPalette::paletteWithStyle(dark);
    EXPECT_TRUE(ZelQtPalette::paletteWithStyle(light).isCopyOf(first));
    light->setLabelColor(zel::NSColor::colorWithSRGBRed(1, 0, 0, 1));
    const QPalette second = ZelQtPalette::paletteWithStyle(light);
    EXPECT_FALSE(second.isCopyOf(first));
    EXPECT_EQ(second.color(QPalette::WindowText).rgba(), qRgb(255, 0, 0));
}

TEST_F(QtPaletteTests, MoreStylesThanAreKeptGiveTheRightPalettesAllTheSame) {
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < 40; ++number) {
            const auto style = addChildStyle(light, "style" + std::to_string(number));
            style->setLabelColor(zel::NSColor::colorWithSRGBRed(number / 255.0, 0, 0, 1));
            EXPECT_EQ(ZelQtPalette::paletteWithStyle(style).color(QPalette::WindowText).rgba(),
                      qRgb(number, 0, 0));
        }
    }
}

TEST_F(QtPaletteTests, AWidgetThatFollowsPassesItsPaletteToThoseInside) {
    QWidget window;
    QWidget* const sidebar = new QWidget(&window);
    QPushButton* const button = new QPushButton(sidebar);
    styleableOf(*sidebar)->setCustomZelStyleSchemeIdentifier("dark");
    ZelQtPalette::follow(*sidebar);
    EXPECT_EQ(windowText(*sidebar), white);
    EXPECT_EQ(windowText(*button), white);
    EXPECT_EQ(windowText(window), QPalette().color(QPalette::WindowText).rgba());
}

TEST_F(QtPaletteTests, AWidgetThatFollowsHearsOfEachChangeOnce) {
    QWidget window;
    ZelQtPalette::follow(window);
    EXPECT_EQ(windowText(window), black);
    const Changes changes(window);
    makeDark();
    EXPECT_EQ(windowText(window), white);
    EXPECT_EQ(changes.count, 1);
    dark->updateStyleWithChanges([](const auto& style) {
        style->setLabelColor(zel::NSColor::colorWithSRGBRed(0, 1, 0, 1));
        return true;
    });
    EXPECT_EQ(windowText(window), qRgb(0, 255, 0));
    EXPECT_EQ(changes.count, 2);
}

TEST_F(QtPaletteTests, FollowingLeavesTheWidgetsOwnHandlerItsCalls) {
    QWidget window;
    ZelQtPalette::follow(window);
    styleableOf(window)->registerStyleableChangeHandler(recorder.handler("own"));
    recorder.take();
    makeDark();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"own", dark, 1}}));
    EXPECT_EQ(windowText(window), white);
}

TEST_F(QtPaletteTests, AMovedWidgetThatFollowsTakesTheColoursOfItsNewPlace) {
    QWidget window;
    QWidget other;
    styleableOf(other)->setCustomZelStyleSchemeIdentifier("dark");
    QWidget* const child = new QWidget(&window);
    ZelQtPalette::follow(*child);
    EXPECT_EQ(windowText(*child), black);
    child->setParent(&other);
    EXPECT_EQ(windowText(*child), white);
}

TEST_F(QtPaletteTests, AWidgetThatFollowsNoMoreInheritsAgain) {
    QWidget window;
    QWidget* const child = new QWidget(&window);
    styleableOf(*child)->setCustomZelStyleSchemeIdentifier("dark");
    ZelQtPalette::follow(*child);
    ZelQtPalette::unfollow(*child);
    EXPECT_EQ(child->palette(), window.palette());
    makeDark();
    EXPECT_EQ(child->palette(), window.palette());
}

TEST_F(QtPaletteTests, StylesUpdatedOnAnotherThreadAreToldOnTheMainThreadOnce) {
    QWidget window;
    ZelQtPalette::follow(window);
    const Changes changes(window);
    updateElsewhere(light, {0.2, 0.4, 0.6});
    EXPECT_EQ(changes.count, 0); // the other thread leaves Qt alone
    EXPECT_EQ(windowText(window), black);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count, 1);
    EXPECT_EQ(windowText(window), qRgb(153, 153, 153));
}

TEST_F(QtPaletteTests, WhatIsToldMeanwhileOnTheMainThreadIsNotToldAgain) {
    QWidget window;
    ZelQtPalette::follow(window);
    const Changes changes(window);
    updateElsewhere(light, {0.2});
    styleableOf(window)->setCustomZelStyleSchemeIdentifier("dark");
    EXPECT_EQ(windowText(window), white);
    window.setPalette(QPalette(Qt::green)); // which nobody is to overwrite
    changes.count = 0;
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count, 0);
}

TEST_F(QtPaletteTests, WhoEndsOrFollowsNoMoreBeforeItIsToldHearsNothing) {
    QWidget window;
    QWidget* const child = new QWidget(&window);
    auto ending = std::make_unique<QWidget>();
    for (QWidget* const each : {&window, child, ending.get()}) {
        ZelQtPalette::follow(*each);
    }
    const auto held = styleableOf(*ending);
    updateElsewhere(light, {0.6});
    ending.reset();
    ZelQtPalette::unfollow(*child);
    QCoreApplication::processEvents();
    EXPECT_EQ(windowText(window), qRgb(153, 153, 153));
    EXPECT_FALSE(child->testAttribute(Qt::WA_SetPalette));
    EXPECT_EQ(held->widget(), nullptr);
}

} // namespace
