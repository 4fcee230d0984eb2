// SPDX-License-Identifier: Apache-2.0
// What is GTK's own about companions; what they have in common with other toolkits' is in the
// contract.
#include "tests/gtk4/GtkFixture.h"

#include <ZelStyleKit/ZelGtkColor.h>

namespace {

using namespace zeltest;

class StyleableTests : public GtkTests {
protected:
    /// A label in a box that is pinned to the dark scheme, beside a box that isn't.
    void SetUp() override {
        GtkTests::SetUp();
        window = makeWindow();
        pinned = makeBox();
        other = makeBox();
        gtk_box_append(GTK_BOX(boxIn(window)), pinned);
        gtk_box_append(GTK_BOX(boxIn(window)), other);
        pin(pinned, "dark");
        label = addLabel(pinned);
        styleableOf(label)->registerStyleableChangeHandler(recorder.handler("label"));
        recorder.take();
    }
    static void drain() { zel::NSMainQueue::mainQueue().drain(); }

    GtkWidget* window = nullptr;
    GtkWidget* pinned = nullptr;
    GtkWidget* other = nullptr;
    GtkWidget* label = nullptr;
};

TEST_F(StyleableTests, NoWidgetHasNoStyleable) {
    EXPECT_EQ(styleableOf(nullptr), nullptr);
    EXPECT_FALSE(zel::ZelGtkStyleable::hasStyleable(nullptr));
}

TEST_F(StyleableTests, AStyleableIsMadeWhenItIsAskedForWithThoseAbove) {
    GtkWidget* const box = makeBox();
    gtk_box_append(GTK_BOX(other), box);
    GtkWidget* const fresh = addLabel(box);
    EXPECT_FALSE(zel::ZelGtkStyleable::hasStyleable(box));
    EXPECT_FALSE(zel::ZelGtkStyleable::hasStyleable(fresh));
    EXPECT_EQ(styleableOf(fresh)->widget(), fresh);
    EXPECT_EQ(styleableOf(fresh)->parentZelStyleable(), styleableOf(box));
    EXPECT_TRUE(zel::ZelGtkStyleable::hasStyleable(box));
}

TEST_F(StyleableTests, AStyleableIsBuiltIntoATreeAfterwards) {
    GtkWidget* const fresh = gtk_label_new("fresh");
    g_object_ref_sink(fresh);
    styleableOf(fresh)->registerStyleableChangeHandler(recorder.handler("fresh"));
    gtk_box_append(GTK_BOX(pinned), fresh);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"fresh", light, 0}, {"fresh", dark, 1}}));
    g_object_unref(fresh);
}

TEST_F(StyleableTests, AWidgetOnItsWayToAnotherPlaceIsToldOnce) {
    g_object_ref(label);
    gtk_box_remove(GTK_BOX(pinned), label);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    gtk_box_append(GTK_BOX(other), label);
    EXPECT_EQ(recorder.take(), (StyleCalls{{"label", light, 1}}));
    drain();
    EXPECT_EQ(recorder.take(), StyleCalls{});
    g_object_unref(label);
}

TEST_F(StyleableTests, AWidgetThatStaysOutOfTheTreeIsToldOnTheMainQueue) {
    g_object_ref(label);
    gtk_box_remove(GTK_BOX(pinned), label);
    EXPECT_EQ(recorder.take(), StyleCalls{});
    drain();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"label", light, 1}}));
    g_object_unref(label);
}

TEST_F(StyleableTests, AWidgetThatIsDestroyedIsToldNothing) {
    gtk_box_remove(GTK_BOX(boxIn(window)), pinned);
    drain();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(StyleableTests, WhoHoldsAStyleableOnHoldsOneWithoutWidgetAndWithoutHandlers) {
    const auto held = styleableOf(label);
    gtk_box_remove(GTK_BOX(pinned), label);
    EXPECT_EQ(held->widget(), nullptr);
    EXPECT_EQ(held->parentZelStyleable(), nullptr);
    makeSystemDark();
    makeSystemLight();
    EXPECT_EQ(recorder.take(), StyleCalls{});
}

TEST_F(StyleableTests, ADialogIsResolvedAnewWhenItGetsAndLosesItsOwner) {
    pin(window, "dark");
    GtkWidget* const dialog = makeWindow();
    styleableOf(boxIn(dialog))->registerStyleableChangeHandler(recorder.handler("in dialog"));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"in dialog", light, 0}}));
    gtk_window_set_transient_for(GTK_WINDOW(dialog), GTK_WINDOW(window));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"in dialog", dark, 1}}));
    gtk_window_set_transient_for(GTK_WINDOW(dialog), nullptr);
    drain();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"in dialog", light, 1}}));
}

TEST_F(StyleableTests, ADialogThatOutlivesItsOwnerIsResolvedAnew) {
    pin(window, "dark");
    GtkWidget* const dialog = makeWindow();
    gtk_window_set_transient_for(GTK_WINDOW(dialog), GTK_WINDOW(window));
    styleableOf(dialog)->registerStyleableChangeHandler(recorder.handler("dialog"));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"dialog", dark, 0}}));
    gtk_window_destroy(GTK_WINDOW(window));
    drain();
    EXPECT_EQ(recorder.take(), (StyleCalls{{"dialog", light, 1}}));
    EXPECT_EQ(styleableOf(dialog)->parentZelStyleable(), nullptr);
}

TEST_F(StyleableTests, OfWindowsThatAreTransientForEachOtherTheFirstCounts) {
    GtkWidget* const second = makeWindow();
    pin(second, "dark");
    EXPECT_EQ(styleableOf(label)->parentZelStyleable(), styleableOf(pinned));
    gtk_window_set_transient_for(GTK_WINDOW(window), GTK_WINDOW(second));
    gtk_window_set_transient_for(GTK_WINDOW(second), GTK_WINDOW(window));
    EXPECT_EQ(styleableOf(window)->parentZelStyleable(), styleableOf(second));
    EXPECT_EQ(styleableOf(second)->parentZelStyleable(), nullptr);
    EXPECT_EQ(domain->styleFor(styleableOf(other)), dark);
    gtk_window_set_transient_for(GTK_WINDOW(second), nullptr);
}

TEST_F(StyleableTests, WindowsThatWereInARingBeforeTheyWereStyledEndSomewhere) {
    GtkWidget* const first = makeWindow();
    GtkWidget* const second = makeWindow();
    gtk_window_set_transient_for(GTK_WINDOW(first), GTK_WINDOW(second));
    gtk_window_set_transient_for(GTK_WINDOW(second), GTK_WINDOW(first));
    EXPECT_EQ(domain->styleFor(styleableOf(boxIn(first))), light);
    EXPECT_EQ(domain->styleFor(styleableOf(boxIn(second))), light);
    gtk_window_set_transient_for(GTK_WINDOW(second), nullptr);
}

TEST_F(StyleableTests, TheWidgetsInsideACompoundWidgetFollowItsPlace) {
    GtkWidget* const button = gtk_menu_button_new();
    gtk_menu_button_set_popover(GTK_MENU_BUTTON(button), gtk_popover_new());
    gtk_box_append(GTK_BOX(pinned), button);
    GtkWidget* const popover = GTK_WIDGET(gtk_menu_button_get_popover(GTK_MENU_BUTTON(button)));
    styleableOf(popover)->registerStyleableChangeHandler(recorder.handler("popover"));
    EXPECT_EQ(recorder.take(), (StyleCalls{{"popover", dark, 0}}));
    pin(pinned, "light");
    EXPECT_EQ(recorder.take(), (StyleCalls{{"label", light, 1}, {"popover", light, 1}}));
}

TEST(GtkColorTests, AColourBecomesOneOfGtksInSRgb) {
    const auto color =
        zel::ZelGdkRGBAWithColor(zel::NSColor::colorWithSRGBRed(0.25, 0.5, 0.75, 0.125));
    ASSERT_TRUE(color);
    EXPECT_EQ(color->red, 0.25F);
    EXPECT_EQ(color->green, 0.5F);
    EXPECT_EQ(color->blue, 0.75F);
    EXPECT_EQ(color->alpha, 0.125F);
}

TEST(GtkColorTests, WhatGtkCannotDrawIsClampedAndWhatHasNoRgbFormIsNone) {
    const auto color = zel::ZelGdkRGBAWithColor(zel::NSColor::colorWithSRGBRed(-1, 2, 0.5, 1));
    ASSERT_TRUE(color);
    EXPECT_EQ(color->red, 0.0F);
    EXPECT_EQ(color->green, 1.0F);
    EXPECT_EQ(color->blue, 0.5F);
    EXPECT_FALSE(zel::ZelGdkRGBAWithColor(zel::NSColor::colorWithDeviceCyan(1, 0, 0, 0, 1)));
}

TEST(GtkColorTests, AColourOfGtksComesBackAsItWas) {
    const zel::NSColor color = zel::ZelColorWithGdkRGBA({0.25F, 0.5F, 0.75F, 0.125F});
    EXPECT_EQ(color, zel::NSColor::colorWithSRGBRed(0.25, 0.5, 0.75, 0.125));
}

} // namespace
