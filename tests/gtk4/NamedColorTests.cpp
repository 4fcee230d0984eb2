// SPDX-License-Identifier: Apache-2.0
// Which widget has which named colours, and how often GTK is given them.
#include "tests/gtk4/GtkFixture.h"
#include "tests/support/OtherThread.h"

namespace {

using namespace zeltest;

class NamedColorTests : public GtkTests {
protected:
    /// A label in a sidebar, beside another label.
    void SetUp() override {
        GtkTests::SetUp();
        window = makeWindow();
        sidebar = makeBox();
        gtk_box_append(GTK_BOX(boxIn(window)), sidebar);
        inside = addLabel(sidebar);
        outside = addLabel(boxIn(window));
        provider.emplace();
    }
    void TearDown() override {
        GtkTests::TearDown();
        provider.reset();
    }

    std::optional<zel::ZelGtkStyleProvider> provider;
    GtkWidget* window = nullptr;
    GtkWidget* sidebar = nullptr;
    GtkWidget* inside = nullptr;
    GtkWidget* outside = nullptr;
};

TEST_F(NamedColorTests, EveryWidgetHasTheMainStylesColours) {
    EXPECT_EQ(background(outside), lightColor);
    EXPECT_EQ(background(inside), lightColor);
    makeSystemDark();
    EXPECT_EQ(background(outside), darkColor);
    EXPECT_EQ(background(inside), darkColor);
}

TEST_F(NamedColorTests, EveryPredefinedColourHasAName) {
    int count = 0;
    GdkRGBA color{};
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    GtkStyleContext* const context = gtk_widget_get_style_context(outside);
#define ZEL_LOOK_UP(key, Key, Kind, group)                                                         \
    count += gtk_style_context_lookup_color(context, "zel_" #key, &color) ? 1 : 0;
    ZEL_STYLE_ATTRIBUTES(ZEL_LOOK_UP)
#undef ZEL_LOOK_UP
    G_GNUC_END_IGNORE_DEPRECATIONS
    EXPECT_EQ(count, 54); // all but the style's type, which is a number
}

TEST_F(NamedColorTests, AnAttributeOfTheHostsOwnHasAName) {
    light->updateStyleWithChanges([](const auto& style) {
        style->setValue(Rgb{1, 2, 3, 50}.color(), "brand");
        style->setValue(Rgb{4, 5, 6}.color(), "my brand: 2");
        style->setValue(zel::NSColor::colorWithDeviceCyan(1, 0, 0, 0, 1), "printed");
        style->setValue(zel::ZelAttributeValue("no colour"), "text");
        return true;
    });
    EXPECT_EQ(named(outside, "zel_brand"), (Rgb{1, 2, 3, 50}));
    EXPECT_EQ(named(outside, "zel_my brand: 2"), (Rgb{4, 5, 6}));
    EXPECT_EQ(named(outside, "zel_printed"), (Rgb{0, 0, 0, 0}));
    EXPECT_EQ(named(outside, "zel_text"), (Rgb{0, 0, 0, 0}));
}

TEST_F(NamedColorTests, ASubtreeWithAnotherSchemeHasItsOwn) {
    pin(sidebar, "dark");
    EXPECT_EQ(background(sidebar), darkColor);
    EXPECT_EQ(background(inside), darkColor);
    EXPECT_EQ(background(outside), lightColor);
    EXPECT_EQ(background(boxIn(window)), lightColor);
}

TEST_F(NamedColorTests, ASubtreeWithAnotherStyleHasItsOwn) {
    styleableOf(sidebar)->setCustomZelStyleIdentifier("sidebar");
    EXPECT_EQ(background(inside), lightSidebarColor);
    EXPECT_EQ(background(outside), lightColor);
    makeSystemDark();
    EXPECT_EQ(background(inside), darkSidebarColor);
    EXPECT_EQ(background(outside), darkColor);
}

TEST_F(NamedColorTests, ASubtreeInsideASubtreeHasItsOwn) {
    GtkWidget* const nested = makeBox();
    gtk_box_append(GTK_BOX(sidebar), nested);
    GtkWidget* const label = addLabel(nested);
    pin(sidebar, "dark");
    pin(nested, "light");
    EXPECT_EQ(background(label), lightColor);
    EXPECT_EQ(background(inside), darkColor);
    makeSystemDark();
    EXPECT_EQ(background(label), lightColor);
    EXPECT_EQ(background(inside), darkColor);
}

// Nothing is to be done for it until the system turns dark, and nobody tells it then.
TEST_F(NamedColorTests, ASubtreePinnedToTheCurrentSchemeKeepsItWhenTheSystemTurns) {
    pin(sidebar, "light");
    makeSystemDark();
    EXPECT_EQ(background(inside), lightColor);
    EXPECT_EQ(background(outside), darkColor);
    makeSystemLight();
    EXPECT_EQ(background(inside), lightColor);
    EXPECT_EQ(background(outside), lightColor);
}

TEST_F(NamedColorTests, WidgetsThatComeLaterHaveTheSubtreesColours) {
    pin(sidebar, "dark");
    GtkWidget* const group = makeBox();
    GtkWidget* const below = addLabel(group);
    gtk_box_append(GTK_BOX(sidebar), group);
    EXPECT_EQ(background(group), darkColor);
    EXPECT_EQ(background(below), darkColor);
    EXPECT_EQ(background(addLabel(group)), darkColor);
}

TEST_F(NamedColorTests, WidgetsThatLeaveHaveTheColoursOfTheirNewPlace) {
    pin(sidebar, "dark");
    g_object_ref(inside);
    gtk_box_remove(GTK_BOX(sidebar), inside);
    gtk_box_append(GTK_BOX(boxIn(window)), inside);
    g_object_unref(inside);
    EXPECT_EQ(background(inside), lightColor);
}

TEST_F(NamedColorTests, ASubtreeThatIsPinnedNoMoreHasTheMainStylesColours) {
    pin(sidebar, "dark");
    styleableOf(sidebar)->setCustomZelStyleSchemeIdentifier(std::nullopt);
    EXPECT_EQ(background(inside), lightColor);
    makeSystemDark();
    EXPECT_EQ(background(inside), darkColor);
}

TEST_F(NamedColorTests, PopoversAndTheInsideOfControlsBelongToTheSubtree) {
    GtkWidget* const menu = gtk_menu_button_new();
    gtk_box_append(GTK_BOX(sidebar), menu);
    pin(sidebar, "dark");
    GtkWidget* const text = gtk_label_new("in the popover");
    GtkWidget* const popover = gtk_popover_new();
    gtk_popover_set_child(GTK_POPOVER(popover), text);
    gtk_menu_button_set_popover(GTK_MENU_BUTTON(menu), popover);
    EXPECT_EQ(background(text), darkColor);
    EXPECT_EQ(background(gtk_widget_get_first_child(menu)), darkColor);
}

TEST_F(NamedColorTests, ADialogThatNobodyTouchesFollowsItsPinnedOwner) {
    pin(window, "dark");
    GtkWidget* const dialog = makeWindow();
    EXPECT_EQ(background(boxIn(dialog)), lightColor);
    gtk_window_set_transient_for(GTK_WINDOW(dialog), GTK_WINDOW(window));
    EXPECT_EQ(background(dialog), darkColor);
    EXPECT_EQ(background(boxIn(dialog)), darkColor);
}

TEST_F(NamedColorTests, WhatWasPinnedBeforeTheProviderCameHasItsColours) {
    provider.reset();
    EXPECT_EQ(background(outside), (Rgb{0, 0, 0, 0}));
    pin(sidebar, "dark");
    provider.emplace();
    EXPECT_EQ(background(inside), darkColor);
    EXPECT_EQ(background(outside), lightColor);
}

TEST_F(NamedColorTests, TheColoursGoWithTheProvider) {
    pin(sidebar, "dark");
    provider.reset();
    EXPECT_EQ(background(inside), (Rgb{0, 0, 0, 0}));
    EXPECT_EQ(background(outside), (Rgb{0, 0, 0, 0}));
    makeSystemDark();
    gtk_box_append(GTK_BOX(sidebar), makeBox());
}

TEST_F(NamedColorTests, ASecondProviderForADisplayDoesNothing) {
    {
        const zel::ZelGtkStyleProvider second;
        EXPECT_EQ(second.loadCount(), 0U);
    }
    EXPECT_EQ(background(outside), lightColor);
    makeSystemDark();
    EXPECT_EQ(background(outside), darkColor);
}

TEST_F(NamedColorTests, NewValuesAreShownWhereTheirStyleApplies) {
    pin(sidebar, "dark");
    dark->updateStyleWithChanges([](const auto& style) {
        style->setBackgroundColor(Rgb{1, 2, 3}.color());
        return true;
    });
    EXPECT_EQ(background(inside), (Rgb{1, 2, 3}));
    EXPECT_EQ(background(outside), lightColor);
}

TEST_F(NamedColorTests, AChangeOnAnotherThreadIsTakenOverOnTheMainQueue) {
    pin(sidebar, "dark");
    runElsewhere([this] {
        dark->updateStyleWithChanges([](const auto& style) {
            style->setBackgroundColor(Rgb{1, 2, 3}.color());
            return true;
        });
    });
    EXPECT_EQ(background(inside), darkColor);
    zel::NSMainQueue::mainQueue().drain();
    EXPECT_EQ(background(inside), (Rgb{1, 2, 3}));
}

TEST_F(NamedColorTests, AChangeOfTheMainStyleOnAnotherThreadIsTakenOverOnTheMainQueue) {
    runElsewhere([this] {
        light->updateStyleWithChanges([](const auto& style) {
            style->setBackgroundColor(Rgb{1, 2, 3}.color());
            return true;
        });
    });
    EXPECT_EQ(background(outside), lightColor);
    zel::NSMainQueue::mainQueue().drain();
    EXPECT_EQ(background(outside), (Rgb{1, 2, 3}));
}

TEST_F(NamedColorTests, ManyChangesOnAnotherThreadAreTakenOverInOneGo) {
    pin(sidebar, "dark");
    const auto loads = provider->loadCount();
    updateElsewhere(dark, {0.2, 0.4, 0.6});
    EXPECT_EQ(provider->loadCount(), loads);
    EXPECT_EQ(zel::NSMainQueue::mainQueue().drain(), 1U);
    EXPECT_EQ(provider->loadCount(), loads + 1);
    EXPECT_EQ(named(inside, "zel_labelColor"), (Rgb{153, 153, 153}));
    updateElsewhere(dark, {0.8});
    zel::NSMainQueue::mainQueue().drain();
    EXPECT_EQ(named(inside, "zel_labelColor"), (Rgb{204, 204, 204}));
}

TEST_F(NamedColorTests, GtkIsGivenColoursOnlyWhereTheyAreOthers) {
    EXPECT_EQ(provider->loadCount(), 1U);
    pin(sidebar, "dark");
    EXPECT_EQ(provider->loadCount(), 2U) << "one sheet, for the sidebar and all that is in it";
    GtkWidget* const second = makeBox();
    gtk_box_append(GTK_BOX(boxIn(window)), second);
    pin(second, "dark");
    addLabel(second);
    EXPECT_EQ(provider->loadCount(), 2U) << "they wear the same sheet";
    lightSidebar->updateStyleWithChanges([](const auto& style) {
        style->setBackgroundColor(Rgb{1, 2, 3}.color());
        return true;
    });
    EXPECT_EQ(provider->loadCount(), 2U) << "nobody wears it";
    dark->updateStyleWithChanges([](const auto& style) {
        style->setBackgroundColor(Rgb{1, 2, 3}.color());
        return true;
    });
    EXPECT_EQ(provider->loadCount(), 3U);
    dark->updateStyleWithChanges([](const auto& style) {
        style->setValue(zel::ZelAttributeValue(7), "count");
        return true;
    });
    EXPECT_EQ(provider->loadCount(), 3U) << "its colours are the same";
}

} // namespace
