// SPDX-License-Identifier: Apache-2.0
// Beside libadwaita, which has a style manager and named colours of its own.
#include "tests/gtk4/GtkFixture.h"

#include <adwaita.h>

namespace {

using namespace zeltest;

class AdwaitaTests : public GtkTests {
protected:
    static void SetUpTestSuite() {
        GtkTests::SetUpTestSuite();
        adw_init();
    }
    static void changed(GObject* /*manager*/, GParamSpec* property, gpointer names) {
        static_cast<Names*>(names)->emplace_back(g_param_spec_get_name(property));
    }
};

TEST_F(AdwaitaTests, ItsStyleManagerAndItsColoursAreLeftAlone) {
    AdwStyleManager* const manager = adw_style_manager_get_default();
    Names changes;
    g_signal_connect(manager, "notify", G_CALLBACK(changed), &changes);
    GtkWidget* const window = adw_window_new();
    GtkWidget* const box = makeBox();
    adw_window_set_content(ADW_WINDOW(window), box);
    GtkWidget* const label = addLabel(box);
    const Rgb itsBackground = named(label, "window_bg_color");
    ASSERT_NE(itsBackground, (Rgb{0, 0, 0, 0}));
    {
        const zel::ZelGtkMainQueue queue;
        const zel::ZelGtkStyleProvider provider;
        EXPECT_EQ(background(label), lightColor);
        gtk_window_present(GTK_WINDOW(window));
        makeSystemDark();
        EXPECT_EQ(background(label), darkColor);
        pin(box, "light");
        EXPECT_EQ(background(label), lightColor);
        EXPECT_EQ(background(window), darkColor);
        EXPECT_EQ(named(label, "window_bg_color"), itsBackground);
        EXPECT_EQ(named(window, "window_bg_color"), itsBackground);
    }
    EXPECT_EQ(adw_style_manager_get_color_scheme(manager), ADW_COLOR_SCHEME_DEFAULT);
    EXPECT_EQ(changes, Names{});
    gboolean prefersDark = TRUE;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &prefersDark,
                 nullptr);
    EXPECT_FALSE(prefersDark);
    g_signal_handlers_disconnect_by_data(manager, &changes);
}

TEST_F(AdwaitaTests, ItTurnsDarkWithoutTouchingOurs) {
    GtkWidget* const window = makeWindow();
    const zel::ZelGtkStyleProvider provider;
    AdwStyleManager* const manager = adw_style_manager_get_default();
    adw_style_manager_set_color_scheme(manager, ADW_COLOR_SCHEME_FORCE_DARK);
    EXPECT_TRUE(adw_style_manager_get_dark(manager));
    EXPECT_EQ(background(window), lightColor);
    makeSystemDark();
    makeSystemLight();
    EXPECT_EQ(adw_style_manager_get_color_scheme(manager), ADW_COLOR_SCHEME_FORCE_DARK);
    EXPECT_EQ(background(window), lightColor);
}

} // namespace
