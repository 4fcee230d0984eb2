// SPDX-License-Identifier: Apache-2.0
#include "GalleryWindow.h"

#include "Card.h"
#include "ControlsPanel.h"
#include "Sidebar.h"

#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleManager.h>

namespace gallery {
namespace {

constexpr const char* actionGroup = "gallery";

GtkWidget* makeCards() {
    GtkWidget* const cards = makeBox(GTK_ORIENTATION_HORIZONTAL, 16);
    for (GtkWidget* const each : {makeControls(), makeList(), makeTinted()}) {
        gtk_widget_set_hexpand(each, TRUE);
        gtk_box_append(GTK_BOX(cards), each);
    }
    gtk_widget_set_vexpand(cards, FALSE); // the list would
    return cards;
}

} // namespace

GalleryWindow::GalleryWindow()
    : modes_(zel::ZelStyleManager::sharedStyleManager(), actionGroup),
      window_(GTK_WIDGET(g_object_ref(gtk_window_new()))) {
    gtk_window_set_title(GTK_WINDOW(window_), "ZelStyleKit Gallery");
    gtk_window_set_default_size(GTK_WINDOW(window_), 1340, 900);
    gtk_widget_add_css_class(window_, "gallery");
    GSimpleActionGroup* const actions = g_simple_action_group_new();
    g_action_map_add_action(G_ACTION_MAP(actions), modes_.action());
    gtk_widget_insert_action_group(window_, actionGroup, G_ACTION_GROUP(actions));
    g_object_unref(actions);

    GtkWidget* const attributes =
        makeCard("55 attributes", "Every predefined attribute, as the window's style has it.");
    gtk_widget_set_vexpand(attributes, TRUE);
    gtk_box_append(GTK_BOX(attributes), grid_.widget());
    GtkWidget* const content = makeBox(GTK_ORIENTATION_VERTICAL, 16, "gallery-content");
    gtk_box_append(GTK_BOX(content), makeCards());
    gtk_box_append(GTK_BOX(content), attributes);
    gtk_widget_set_vexpand(content, TRUE);

    GtkWidget* const main = makeBox(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(main), makeBar());
    gtk_box_append(GTK_BOX(main), content);
    gtk_widget_set_hexpand(main, TRUE);
    GtkWidget* const row = makeBox(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_box_append(GTK_BOX(row), makeSidebar(grid_));
    gtk_box_append(GTK_BOX(row), main);
    gtk_window_set_child(GTK_WINDOW(window_), row);
}

GalleryWindow::~GalleryWindow() {
    gtk_window_destroy(GTK_WINDOW(window_));
    g_object_unref(window_);
}

// The sidebar reaches to the top: the bar is a part of the content, and no title stands above both.
GtkWidget* GalleryWindow::makeBar() {
    GtkWidget* const none = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_widget_set_visible(none, FALSE);
    gtk_window_set_titlebar(GTK_WINDOW(window_), none);

    modeButton_ = gtk_menu_button_new();
    gtk_menu_button_set_label(GTK_MENU_BUTTON(modeButton_), "Appearance");
    gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(modeButton_), modes_.menu());
    GtkWidget* const bar = gtk_header_bar_new();
    gtk_header_bar_set_title_widget(GTK_HEADER_BAR(bar), makeText("Gallery", "bar-title"));
    gtk_header_bar_pack_end(GTK_HEADER_BAR(bar), modeButton_);
    return bar;
}

// As GTK does when an item is clicked: its action, looked up from the button upwards, with its
// target.
bool GalleryWindow::chooseMode(const std::string& identifier) const {
    GMenuModel* const menu = gtk_menu_button_get_menu_model(GTK_MENU_BUTTON(modeButton_));
    bool chosen = false;
    for (int item = 0; item < g_menu_model_get_n_items(menu) && !chosen; ++item) {
        gchar* action = nullptr;
        gchar* target = nullptr;
        g_menu_model_get_item_attribute(menu, item, G_MENU_ATTRIBUTE_ACTION, "s", &action);
        g_menu_model_get_item_attribute(menu, item, G_MENU_ATTRIBUTE_TARGET, "s", &target);
        chosen = action && target && identifier == target &&
                 gtk_widget_activate_action(modeButton_, action, "s", target) != FALSE;
        g_free(action);
        g_free(target);
    }
    return chosen;
}

bool GalleryWindow::isDark() const {
    return zel::ZelStyle::forStyleable(zel::ZelGtkStyleable::of(window_))->isDarkStyle();
}

} // namespace gallery
