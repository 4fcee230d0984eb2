// SPDX-License-Identifier: Apache-2.0
#include "ControlsPanel.h"

#include "Card.h"
#include "TintedStyle.h"

#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyleDomain.h>

#include <array>
#include <string>

namespace gallery {
namespace {

GtkWidget* button(const char* text, const char* cssClass = nullptr) {
    GtkWidget* const made = gtk_button_new_with_label(text);
    if (cssClass) {
        gtk_widget_add_css_class(made, cssClass);
    }
    return made;
}

GtkWidget* disabled(GtkWidget* widget) {
    gtk_widget_set_sensitive(widget, FALSE);
    return widget;
}

GtkWidget* check(const char* text, bool on, GtkWidget* group = nullptr) {
    GtkWidget* const made = gtk_check_button_new_with_label(text);
    if (group) {
        gtk_check_button_set_group(GTK_CHECK_BUTTON(made), GTK_CHECK_BUTTON(group));
    }
    gtk_check_button_set_active(GTK_CHECK_BUTTON(made), on);
    return made;
}

GtkWidget* toggle(bool on) {
    GtkWidget* const made = gtk_switch_new();
    gtk_switch_set_active(GTK_SWITCH(made), on);
    return made;
}

GtkWidget* slider(double value) {
    GtkWidget* const made = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 100, 1);
    gtk_range_set_value(GTK_RANGE(made), value);
    return made;
}

GtkWidget* progress(double fraction) {
    GtkWidget* const made = gtk_progress_bar_new();
    gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(made), fraction);
    return made;
}

GtkWidget* entry(const char* text, const char* placeholder) {
    GtkWidget* const made = gtk_entry_new();
    gtk_editable_set_text(GTK_EDITABLE(made), text);
    gtk_editable_set_width_chars(GTK_EDITABLE(made), 8);
    gtk_entry_set_placeholder_text(GTK_ENTRY(made), placeholder);
    return made;
}

GtkWidget* choice() {
    static constexpr std::array<const char*, 4> words{"Choice", "Another", "One more", nullptr};
    return gtk_drop_down_new_from_strings(words.data());
}

/// A pair of radio buttons, the first one chosen.
GtkWidget* radios(const char* chosen, const char* other) {
    GtkWidget* const first = check(chosen, true);
    return makeRow({first, check(other, false, first)}, true);
}

using Color = std::optional<zel::NSColor> (zel::ZelStyle::*)() const;

struct Accent {
    const char* name;
    Color color;
};
constexpr std::array accents{
    Accent{"blue", &zel::ZelStyle::blueColor},     Accent{"purple", &zel::ZelStyle::purpleColor},
    Accent{"pink", &zel::ZelStyle::pinkColor},     Accent{"orange", &zel::ZelStyle::orangeColor},
    Accent{"green", &zel::ZelStyle::greenColor},   Accent{"teal", &zel::ZelStyle::tealColor},
    Accent{"indigo", &zel::ZelStyle::indigoColor},
};

/// Gives the main styles the colour of one of their attributes as their accent.
void chooseAccent(GtkButton* /*button*/, gpointer accent) {
    const auto style = zel::ZelStyleDomain::defaultDomain()->mainStyle();
    if (const auto color = (style.get()->*static_cast<const Accent*>(accent)->color)()) {
        setAccent(*color);
    }
}

GtkWidget* accentButtons() {
    GtkWidget* const row = makeBox(GTK_ORIENTATION_HORIZONTAL, 10);
    for (const Accent& each : accents) {
        GtkWidget* const made = gtk_button_new();
        gtk_widget_add_css_class(made, "accent");
        gtk_widget_add_css_class(made, each.name);
        gtk_widget_set_tooltip_text(made, each.name);
        gtk_widget_set_valign(made, GTK_ALIGN_CENTER);
        g_signal_connect(made, "clicked", G_CALLBACK(chooseAccent), const_cast<Accent*>(&each));
        gtk_box_append(GTK_BOX(row), made);
    }
    return row;
}

GtkWidget* listRow(const char* scheme, const char* style) {
    GtkWidget* const row = makeBox(GTK_ORIENTATION_HORIZONTAL, 8);
    GtkWidget* const left = makeText(scheme, "cell");
    gtk_widget_set_hexpand(left, TRUE);
    gtk_box_append(GTK_BOX(row), left);
    gtk_box_append(GTK_BOX(row), makeText(style, "cell"));
    return row;
}

} // namespace

GtkWidget* makeControls() {
    GtkWidget* const card = makeCard("Controls", "In the main style, by a style sheet alone.");
    const auto add = [card](GtkWidget* row) { gtk_box_append(GTK_BOX(card), row); };
    add(makeRow({button("Default", "suggested-action"), button("Button"),
                 button("Delete", "destructive-action"), disabled(button("Disabled"))},
                true));
    add(makeRow({check("Checked", true), check("Unchecked", false)}, true));
    add(radios("Chosen", "Another"));
    add(makeRow({toggle(true), toggle(false), disabled(toggle(true)), disabled(toggle(false))}));
    add(makeRow({slider(60), progress(0.6)}, true));
    add(makeRow({entry("", "Placeholder"), choice()}, true));
    return card;
}

GtkWidget* makeList() {
    static constexpr std::array<std::array<const char*, 2>, 4> rows{
        {{"light", "main"}, {"light", "tinted"}, {"dark", "main"}, {"dark", "tinted"}}};
    GtkWidget* const card = makeCard("List", "A header, rows and a selection.");
    GtkWidget* const header = listRow("Scheme", "Style");
    gtk_widget_add_css_class(header, "list-header");
    GtkWidget* const list = gtk_list_box_new();
    for (const auto& each : rows) {
        gtk_list_box_append(GTK_LIST_BOX(list), listRow(each[0], each[1]));
    }
    gtk_list_box_select_row(GTK_LIST_BOX(list),
                            gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), 1));
    gtk_widget_set_vexpand(list, TRUE);
    GtkWidget* const table = makeBox(GTK_ORIENTATION_VERTICAL, 0, "list-frame");
    gtk_widget_set_size_request(table, 220, -1);
    gtk_widget_set_overflow(table, GTK_OVERFLOW_HIDDEN);
    gtk_box_append(GTK_BOX(table), header);
    gtk_box_append(GTK_BOX(table), list);
    gtk_box_append(GTK_BOX(card), table);
    return card;
}

GtkWidget* makeTinted() {
    GtkWidget* const card =
        makeCard("A derived style", "It computes its surfaces from its parent's accent.");
    gtk_widget_set_name(card, "tinted");
    gtk_widget_add_css_class(card, surfaceClass);
    zel::ZelGtkStyleable::of(card)->setCustomZelStyleIdentifier(tintedStyle);
    const auto add = [card](GtkWidget* row) { gtk_box_append(GTK_BOX(card), row); };
    add(accentButtons());
    add(makeRow({button("Default", "suggested-action"), button("Button")}, true));
    add(makeRow({check("Checked", true), toggle(true)}, true));
    gtk_widget_set_halign(gtk_widget_get_last_child(gtk_widget_get_last_child(card)),
                          GTK_ALIGN_START);
    add(radios("Chosen", "Another"));
    add(makeRow({slider(35), progress(0.35)}, true));
    add(makeRow({entry("Text", ""), choice()}, true));
    return card;
}

} // namespace gallery
