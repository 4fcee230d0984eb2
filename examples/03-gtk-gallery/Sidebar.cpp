// SPDX-License-Identifier: Apache-2.0
#include "Sidebar.h"

#include "Card.h"

#include <ZelStyleKit/ZelGtkStyleable.h>

#include <string>

namespace gallery {
namespace {

GtkWidget* groupRow(const GroupName& group) {
    GtkWidget* const row = makeBox(GTK_ORIENTATION_HORIZONTAL, 8);
    GtkWidget* const name = makeText(group.name, "cell");
    gtk_widget_set_hexpand(name, TRUE);
    gtk_box_append(GTK_BOX(row), name);
    const std::string count = std::to_string(SwatchGrid::countOf(group.group));
    gtk_box_append(GTK_BOX(row), makeText(count.c_str(), "count"));
    return row;
}

GtkWidget* note(const char* text) {
    GtkWidget* const made = makeText(text, "sidebar-note");
    gtk_label_set_wrap(GTK_LABEL(made), TRUE);
    gtk_label_set_max_width_chars(GTK_LABEL(made), 24);
    return made;
}

void groupChosen(GtkListBox* /*list*/, GtkListBoxRow* row, gpointer grid) {
    if (row) {
        const auto index = static_cast<std::size_t>(gtk_list_box_row_get_index(row));
        static_cast<SwatchGrid*>(grid)->emphasize(groupNames[index].group);
    }
}

} // namespace

GtkWidget* makeSidebar(SwatchGrid& grid) {
    GtkWidget* const sidebar = makeBox(GTK_ORIENTATION_VERTICAL, 6, "gallery-sidebar");
    gtk_widget_set_name(sidebar, "sidebar");
    gtk_widget_add_css_class(sidebar, surfaceClass);
    zel::ZelGtkStyleable::of(sidebar)->setCustomZelStyleSchemeIdentifier("dark");
    gtk_box_append(GTK_BOX(sidebar), makeText("ZelStyleKit", "product"));
    gtk_box_append(GTK_BOX(sidebar), note("Named colours that follow the desktop"));

    GtkWidget* const list = gtk_list_box_new();
    for (const GroupName& each : groupNames) {
        gtk_list_box_append(GTK_LIST_BOX(list), groupRow(each));
    }
    g_signal_connect(list, "row-selected", G_CALLBACK(groupChosen), &grid);
    gtk_list_box_select_row(GTK_LIST_BOX(list),
                            gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), 0));
    gtk_widget_set_vexpand(list, TRUE);
    gtk_box_append(GTK_BOX(sidebar), list);

    gtk_box_append(GTK_BOX(sidebar), note("This sidebar is pinned to the dark scheme, whatever "
                                          "the rest of the window looks like."));
    return sidebar;
}

} // namespace gallery
