// SPDX-License-Identifier: Apache-2.0
#include "Card.h"

namespace gallery {

GtkWidget* makeBox(GtkOrientation orientation, int spacing, const char* cssClass) {
    GtkWidget* const box = gtk_box_new(orientation, spacing);
    if (cssClass) {
        gtk_widget_add_css_class(box, cssClass);
    }
    return box;
}

GtkWidget* makeText(const char* text, const char* cssClass) {
    GtkWidget* const label = gtk_label_new(text);
    gtk_widget_add_css_class(label, cssClass);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    return label;
}

GtkWidget* makeCard(const char* title, const char* about) {
    GtkWidget* const card = makeBox(GTK_ORIENTATION_VERTICAL, 10, "gallery-card");
    GtkWidget* const heading = makeBox(GTK_ORIENTATION_VERTICAL, 2);
    gtk_box_append(GTK_BOX(heading), makeText(title, "card-title"));
    gtk_box_append(GTK_BOX(heading), makeText(about, "card-about"));
    gtk_box_append(GTK_BOX(card), heading);
    return card;
}

GtkWidget* makeRow(std::initializer_list<GtkWidget*> widgets, bool alike) {
    GtkWidget* const row = makeBox(GTK_ORIENTATION_HORIZONTAL, 10);
    gtk_box_set_homogeneous(GTK_BOX(row), alike);
    for (GtkWidget* const each : widgets) {
        gtk_widget_set_valign(each, GTK_ALIGN_CENTER);
        gtk_widget_set_hexpand(each, alike);
        gtk_box_append(GTK_BOX(row), each);
    }
    return row;
}

} // namespace gallery
