// SPDX-License-Identifier: Apache-2.0
#include "tests/support/OtherThread.h"
#include "tests/support/Recorder.h"

#include <ZelStyleKit/ZelQtMainQueue.h>
#include <ZelStyleKit/ZelQuickAttached.h>
#include <ZelStyleKit/ZelQuickStyleable.h>

#include <QCoreApplication>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <stdexcept>

namespace {

using namespace zeltest;

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb red = qRgb(255, 0, 0);

/// A fresh library on Qt's event loop; a style "sidebar" in both schemes has a red background.
class QuickAttachedTests : public StylingTests {
protected:
    QuickAttachedTests() {
        domain->setSchemeFollowsSystem(true);
        for (const auto& main : {light, dark}) {
            addChildStyle(main, "sidebar")
                ->setBackgroundColor(zel::NSColor::colorWithSRGBRed(1, 0, 0, 1));
        }
    }

    /// Loads the QML below the imports; it ends with the test.
    QObject& load(const QByteArray& qml) {
        QQmlComponent component(&engine);
        component.setData(
            "import QtQuick\nimport QtQuick.Controls.Basic\nimport ZelStyleKit\n" + qml, QUrl());
        loaded.reset(component.create());
        if (!loaded) {
            throw std::runtime_error(component.errorString().toStdString());
        }
        return *loaded;
    }
    [[nodiscard]] QObject& named(const char* name) const {
        auto* const found = loaded->findChild<QObject*>(name);
        if (!found) {
            throw std::runtime_error(name);
        }
        return *found;
    }
    static QRgb colorOf(const QObject& object, const char* property = "color") {
        return object.property(property).value<QColor>().rgba();
    }
    static zel::ZelQuickAttached& attachedTo(QObject& object) {
        return *static_cast<zel::ZelQuickAttached*>(
            qmlAttachedPropertiesObject<zel::ZelQuickAttached>(&object));
    }
    /// How often the values attached to an object change from here on.
    class Changes {
    public:
        explicit Changes(QObject& object) {
            QObject::connect(&attachedTo(object), &zel::ZelQuickAttached::valuesChanged, &context_,
                             [this] { ++count_; });
        }
        int take() { return std::exchange(count_, 0); }

    private:
        QObject context_;
        int count_ = 0;
    };
    static void makeDark() { turn("NSAppearanceNameDarkAqua"); }
    static void makeLight() { turn("NSAppearanceNameAqua"); }

    const std::shared_ptr<zel::ZelStyleDomain> domain = zel::ZelStyleDomain::defaultDomain();
    const std::shared_ptr<zel::ZelStyle> light = addStyle(domain->lightScheme(), "main");
    const std::shared_ptr<zel::ZelStyle> dark = addStyle(domain->darkScheme(), "main");
    const zel::ZelQtMainQueue queue;
    QQmlEngine engine;
    std::unique_ptr<QObject> loaded;

private:
    static void turn(std::string_view appearance) {
        makeSystem(appearance);
        QCoreApplication::processEvents();
    }
};

constexpr const char* nested = R"(
    Rectangle {
        color: Zel.backgroundColor
        Rectangle {
            objectName: "middle"
            color: Zel.backgroundColor
            Rectangle { objectName: "inner"; color: Zel.backgroundColor }
        }
        Rectangle { objectName: "beside"; color: Zel.backgroundColor }
    })";

TEST_F(QuickAttachedTests, EveryPredefinedAttributeIsAProperty) {
    const QMetaObject& type = zel::ZelQuickAttached::staticMetaObject;
    int colors = 0;
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        colors += type.property(index).metaType() == QMetaType::fromType<QColor>() ? 1 : 0;
    }
    EXPECT_EQ(colors, 54);
    EXPECT_EQ(attachedTo(load("Item {}")).property("styleType").toDouble(), 1);
    EXPECT_EQ(colorOf(attachedTo(*loaded), "toolbarBackgroundColor"), qRgb(0xF8, 0xF8, 0xF8));
    EXPECT_EQ(colorOf(attachedTo(*loaded), "grayColor"), qRgb(0x13, 0x13, 0x13));
    EXPECT_EQ(colorOf(attachedTo(*loaded), "labelColorQuarternary"), qRgba(61, 61, 61, 46));
}

TEST_F(QuickAttachedTests, ABindingFollowsTheSystem) {
    const QObject& item = load("Rectangle { color: Zel.backgroundColor; visible: Zel.dark }");
    EXPECT_EQ(colorOf(item), white);
    EXPECT_FALSE(item.property("visible").toBool());
    makeDark();
    EXPECT_EQ(colorOf(item), black);
    EXPECT_TRUE(item.property("visible").toBool());
    makeLight();
    EXPECT_EQ(colorOf(item), white);
}

TEST_F(QuickAttachedTests, ASchemeReachesTheItemAndAllBelow) {
    load(nested);
    attachedTo(named("middle")).setScheme("dark");
    EXPECT_EQ(colorOf(*loaded), white);
    EXPECT_EQ(colorOf(named("beside")), white);
    EXPECT_EQ(colorOf(named("middle")), black);
    EXPECT_EQ(colorOf(named("inner")), black);
}

TEST_F(QuickAttachedTests, SchemeAndStyleAreSetInQml) {
    load(R"(
        Rectangle {
            color: Zel.backgroundColor
            Rectangle {
                objectName: "pinned"
                Zel.scheme: "dark"
                color: Zel.backgroundColor
                Rectangle { objectName: "sidebar"; Zel.style: "sidebar"; color: Zel.backgroundColor }
            }
        })");
    EXPECT_EQ(colorOf(*loaded), white);
    EXPECT_EQ(colorOf(named("pinned")), black);
    EXPECT_EQ(colorOf(named("sidebar")), red);
    EXPECT_EQ(attachedTo(named("pinned")).scheme(), "dark");
    EXPECT_EQ(attachedTo(named("sidebar")).style(), "sidebar");
}

TEST_F(QuickAttachedTests, ABoundSchemeFollowsItsExpressionAndUndefinedUnpins) {
    QObject& item = load(R"(
        Rectangle {
            property bool pinned: false
            Zel.scheme: pinned ? "dark" : undefined
            color: Zel.backgroundColor
        })");
    EXPECT_EQ(colorOf(item), white);
    item.setProperty("pinned", true);
    EXPECT_EQ(colorOf(item), black);
    item.setProperty("pinned", false);
    EXPECT_EQ(colorOf(item), white);
    const auto styleable = zel::ZelQuickStyleable::of(*qobject_cast<QQuickItem*>(&item));
    EXPECT_EQ(styleable->customZelStyleSchemeIdentifier(), std::nullopt);
}

TEST_F(QuickAttachedTests, EachChangeIsToldOnceAndNoOtherIs) {
    load(nested);
    attachedTo(named("middle")).setScheme("light");
    Changes root(*loaded);
    Changes middle(named("middle"));
    Changes inner(named("inner"));
    QCoreApplication::processEvents();
    EXPECT_EQ(root.take() + middle.take() + inner.take(), 0);
    makeDark();
    EXPECT_EQ(root.take(), 1);
    EXPECT_EQ(middle.take() + inner.take(), 0); // pinned to what they were
    attachedTo(named("middle")).setScheme("light");
    EXPECT_EQ(middle.take() + inner.take(), 0); // the same again
    attachedTo(named("middle")).resetScheme();
    EXPECT_EQ(middle.take(), 1);
    EXPECT_EQ(inner.take(), 1);
    EXPECT_EQ(root.take(), 0);
}

TEST_F(QuickAttachedTests, NewValuesOfTheStyleAreToldOnceWhereItApplies) {
    load(nested);
    attachedTo(named("middle")).setStyle("sidebar");
    Changes root(*loaded);
    Changes inner(named("inner"));
    domain->lightScheme()->styleForIdentifier("sidebar")->updateStyleWithChanges(
        [](const auto& style) {
            style->setBackgroundColor(zel::NSColor::colorWithSRGBRed(0, 0, 1, 1));
            return true;
        });
    EXPECT_EQ(inner.take(), 1);
    EXPECT_EQ(root.take(), 0);
    EXPECT_EQ(colorOf(named("inner")), qRgb(0, 0, 255));
}

TEST_F(QuickAttachedTests, StylesUpdatedOnAnotherThreadReachBindingsOnTheMainThreadOnce) {
    load("Rectangle { color: Zel.labelColor }");
    Changes changes(*loaded);
    updateElsewhere(light, {0.2, 0.4, 0.6});
    EXPECT_EQ(changes.take(), 0); // the other thread leaves QML alone
    EXPECT_EQ(colorOf(*loaded), black);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.take(), 1);
    EXPECT_EQ(colorOf(*loaded), qRgb(153, 153, 153));
}

TEST_F(QuickAttachedTests, AnItemThatEndsBeforeItIsToldHearsNothing) {
    load(nested);
    QObject context;
    int told = 0;
    QObject::connect(&attachedTo(named("inner")), &zel::ZelQuickAttached::valuesChanged, &context,
                     [&told] { ++told; });
    Changes root(*loaded);
    updateElsewhere(light, {0.6});
    delete &named("inner");
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 0);
    EXPECT_EQ(root.take(), 1);
}

TEST_F(QuickAttachedTests, AMovedItemTakesTheColoursOfItsNewPlaceOnce) {
    load(nested);
    auto* const inner = qobject_cast<QQuickItem*>(&named("inner"));
    auto* const beside = qobject_cast<QQuickItem*>(&named("beside"));
    attachedTo(*beside).setScheme("dark");
    Changes changes(*inner);
    inner->setParentItem(beside);
    EXPECT_EQ(changes.take(), 1);
    EXPECT_EQ(colorOf(*inner), black);
    inner->setParentItem(nullptr); // out of the tree for a while
    inner->setParentItem(beside);
    EXPECT_EQ(changes.take(), 0);
    inner->setParentItem(qobject_cast<QQuickItem*>(&named("middle")));
    EXPECT_EQ(changes.take(), 1);
    EXPECT_EQ(colorOf(*inner), white);
    inner->setParentItem(qobject_cast<QQuickItem*>(loaded.get()));
    EXPECT_EQ(changes.take(), 0); // the style there is the same
}

TEST_F(QuickAttachedTests, AWindowAndWhatIsInItHaveTheSchemeOfTheWindow) {
    load(R"(
        Window {
            color: Zel.backgroundColor
            Zel.scheme: "dark"
            Rectangle { objectName: "inside"; color: Zel.backgroundColor }
            Window { objectName: "dialog"; color: Zel.backgroundColor }
        })");
    EXPECT_EQ(colorOf(*loaded), black);
    EXPECT_EQ(colorOf(named("inside")), black);
    EXPECT_EQ(colorOf(named("dialog")), black);
    attachedTo(*loaded).resetScheme();
    EXPECT_EQ(colorOf(named("dialog")), white);
}

TEST_F(QuickAttachedTests, OfWindowsThatAreTransientForEachOtherTheFirstCounts) {
    load(R"(
        Window {
            color: Zel.backgroundColor
            Window { objectName: "second"; color: Zel.backgroundColor }
        })");
    auto& first = *qobject_cast<QQuickWindow*>(loaded.get());
    auto& second = *qobject_cast<QQuickWindow*>(&named("second"));
    ASSERT_EQ(second.transientParent(), &first);
    first.setTransientParent(&second);
    attachedTo(first).setScheme("dark");
    EXPECT_EQ(colorOf(first), black);
    EXPECT_EQ(colorOf(second), black);
    first.setTransientParent(nullptr);
    attachedTo(first).resetScheme();
    EXPECT_EQ(colorOf(second), white);
}

TEST_F(QuickAttachedTests, AWindowWhoseTransientParentEndsHasTheMainStyle) {
    auto first = std::make_unique<QQuickWindow>();
    QQuickWindow second;
    second.setTransientParent(first.get());
    attachedTo(*first).setScheme("dark");
    EXPECT_TRUE(attachedTo(second).isDark());
    first.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(attachedTo(second).isDark());
}

TEST_F(QuickAttachedTests, APopupFollowsTheItemItBelongsToOpenOrNot) {
    load(R"(
        Window {
            visible: true
            Item {
                Zel.scheme: "dark"
                Popup {
                    objectName: "popup"
                    background: Rectangle { objectName: "back"; color: Zel.backgroundColor }
                    Rectangle { objectName: "inside"; color: Zel.backgroundColor }
                }
            }
        })");
    const auto back = [&] {
        return colorOf(*named("popup").property("background").value<QObject*>());
    };
    EXPECT_EQ(back(), black);
    EXPECT_TRUE(QMetaObject::invokeMethod(&named("popup"), "open"));
    QCoreApplication::processEvents();
    EXPECT_EQ(back(), black);
    attachedTo(named("popup")).setScheme("light"); // the popup itself can be pinned as well
    EXPECT_EQ(back(), white);
}

TEST_F(QuickAttachedTests, WhereThereIsNoItemTheMainStyleApplies) {
    load("QtObject { property color shown: Zel.backgroundColor }");
    EXPECT_EQ(colorOf(*loaded, "shown"), white);
    makeDark();
    EXPECT_EQ(colorOf(*loaded, "shown"), black);
}

TEST_F(QuickAttachedTests, AnItemThatEndsTakesItsStyleableAlong) {
    load(nested);
    const std::weak_ptr<zel::ZelQuickStyleable> styleable =
        zel::ZelQuickStyleable::of(*qobject_cast<QQuickItem*>(&named("inner")));
    EXPECT_FALSE(styleable.expired());
    loaded.reset();
    EXPECT_TRUE(styleable.expired());
}

} // namespace
