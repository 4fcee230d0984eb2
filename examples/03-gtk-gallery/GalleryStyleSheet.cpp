// SPDX-License-Identifier: Apache-2.0
#include "GalleryStyleSheet.h"

#include <ZelStyleKit/ZelStyleAttributes.h>

#include <gtk/gtk.h>

#include <string>

namespace gallery {
namespace {

constexpr const char* layout = R"css(
window.gallery, .gallery popover, .gallery tooltip {
    font-family: Inter, Cantarell, "Liberation Sans", sans-serif;
    font-size: 10pt;
}
window.gallery { background: @zel_backgroundColorSecondary; color: @zel_labelColor; }
/* Without a compositor there is no shadow, and the theme draws a frame of its own. */
window.gallery.solid-csd { padding: 0; border: none; box-shadow: none; }
.gallery-content { padding: 16px 20px 20px 20px; }
.gallery-card {
    background: @zel_backgroundColorTertiary;
    color: @zel_labelColor;
    border: 1px solid @zel_separatorColorContent;
    border-radius: 12px;
    padding: 14px 16px 16px 16px;
}
.card-title { font-weight: bold; font-size: 11pt; }
.card-about { color: @zel_labelColorSecondary; font-size: 9pt; }
.gallery-sidebar {
    background: @zel_grayColor9;
    color: @zel_labelColor;
    border-right: 1px solid @zel_separatorColorContent;
    min-width: 208px;
    padding: 22px 12px 18px 12px;
}
.gallery-sidebar .product { font-weight: bold; font-size: 15pt; padding: 0 8px; }
.sidebar-note { color: @zel_labelColorSecondary; font-size: 9pt; padding: 0 8px; }
.gallery-sidebar list { background: none; color: @zel_labelColor; margin-top: 14px; }
.gallery-sidebar row { border-radius: 8px; padding: 7px 8px; }
.gallery-sidebar row:hover { background: @zel_labelColorQuarternary; }
.gallery-sidebar row:selected { background: @zel_accentColor; color: @zel_controlLabelColor; }
.gallery-sidebar .count { font-size: 9pt; opacity: 0.7; }
.gallery headerbar {
    background: @zel_navigationBarBackgroundColor;
    color: @zel_navigationBarTextColor;
    box-shadow: none;
    border-bottom: 1px solid @zel_separatorColorContent;
    padding: 4px 12px;
    min-height: 38px;
}
.bar-title { font-weight: bold; }
.swatch-ground {
    min-width: 38px; min-height: 26px;
    border-radius: 7px;
    border: 1px solid @zel_separatorColorContent;
    background-clip: padding-box;
    background-color: #ffffff;
    background-image:
        linear-gradient(45deg, #d0d0d0 25%, transparent 25%, transparent 75%, #d0d0d0 75%),
        linear-gradient(45deg, #d0d0d0 25%, transparent 25%, transparent 75%, #d0d0d0 75%);
    background-size: 10px 10px;
    background-position: 0 0, 5px 5px;
}
.swatch-number { background: @zel_backgroundColorSecondary; }
.swatch-name { font-size: 8.5pt; }
.swatch-value { font-size: 8pt; color: @zel_labelColorSecondary; }
)css";

// The theme draws in its own colours: each part that has some is given the style's.
constexpr const char* controls = R"css(
.gallery button {
    background: alpha(@zel_grayColor5, 0.18);
    color: @zel_labelColor;
    border: none; box-shadow: none; text-shadow: none;
    border-radius: 8px; padding: 5px 12px; min-height: 20px;
}
.gallery button:hover { background: alpha(@zel_grayColor5, 0.28); }
.gallery button:active, .gallery button:checked { background: alpha(@zel_grayColor5, 0.38); }
.gallery button:disabled { color: @zel_labelColorTertiary; }
.gallery button.suggested-action { background: @zel_controlColor; color: @zel_controlLabelColor; }
.gallery button.destructive-action {
    background: @zel_controlColorDestructive; color: @zel_controlLabelColorDestructive;
}
.gallery button.suggested-action:hover, .gallery button.destructive-action:hover {
    box-shadow: inset 0 0 0 99px alpha(white, 0.1);
}
.gallery button:focus:focus-visible, .gallery row:focus:focus-visible,
.gallery checkbutton:focus:focus-visible, .gallery switch:focus:focus-visible,
.gallery scale:focus:focus-visible > trough {
    outline: 2px solid alpha(@zel_accentColor, 0.6); outline-offset: 1px;
}
.gallery headerbar button { color: @zel_navigationBarTextColor; }
.gallery headerbar windowcontrols button { background: none; padding: 4px; min-width: 20px; }
.gallery headerbar windowcontrols button > image {
    background: alpha(@zel_grayColor5, 0.18); color: @zel_labelColor;
    box-shadow: none; border-radius: 99px; padding: 4px;
}
.gallery check, .gallery radio {
    background: transparent; color: transparent;
    border: 1.5px solid @zel_labelColorTertiary;
    box-shadow: none; -gtk-icon-shadow: none;
    min-width: 14px; min-height: 14px;
}
.gallery check { border-radius: 5px; }
.gallery check:checked, .gallery radio:checked {
    background: @zel_controlColor; border-color: @zel_controlColor; color: @zel_controlLabelColor;
}
.gallery checkbutton { color: @zel_labelColor; }
.gallery switch {
    background: alpha(@zel_grayColor5, 0.35);
    border: none; box-shadow: none; border-radius: 99px; padding: 2px;
    color: transparent; min-width: 40px;
}
.gallery switch:checked { background: @zel_controlColor; }
.gallery switch > slider {
    background: white; border: none; border-radius: 99px;
    box-shadow: 0 1px 2px alpha(black, 0.3);
    min-width: 20px; min-height: 20px; margin: 0;
}
.gallery switch > image { color: transparent; -gtk-icon-shadow: none; }
.gallery switch:disabled { opacity: 0.45; }
.gallery scale { padding: 8px 10px; }
.gallery scale > trough, .gallery progressbar > trough {
    background: alpha(@zel_grayColor5, 0.3);
    border: none; box-shadow: none; border-radius: 99px; min-height: 5px;
}
.gallery scale > trough > highlight, .gallery progressbar > trough > progress {
    background: @zel_controlColor; border: none; border-radius: 99px;
    margin: 0; min-width: 0; min-height: 5px;
}
.gallery scale > trough > slider {
    background: white; border: 1px solid alpha(black, 0.15);
    box-shadow: 0 1px 3px alpha(black, 0.3);
    border-radius: 99px; min-width: 16px; min-height: 16px; margin: -7px;
}
.gallery entry {
    background: @zel_backgroundColor; color: @zel_labelColor; caret-color: @zel_accentColor;
    border: 1px solid @zel_separatorColorContent; box-shadow: none; outline: none;
    border-radius: 8px; min-height: 28px; padding: 0 9px;
}
.gallery entry:focus-within {
    border-color: @zel_accentColor; box-shadow: 0 0 0 2px alpha(@zel_accentColor, 0.35);
}
.gallery entry > text > placeholder { color: @zel_labelColorTertiary; opacity: 1; }
.gallery entry > text > selection { background: @zel_accentColor; color: @zel_controlLabelColor; }
.gallery button.accent {
    border-radius: 99px; min-width: 20px; min-height: 20px; padding: 0;
}
.gallery popover > contents {
    background: @zel_backgroundColorTertiary; color: @zel_labelColor;
    border: 1px solid @zel_separatorColorContent; border-radius: 12px;
    box-shadow: 0 4px 14px alpha(black, 0.25);
}
.gallery popover > arrow {
    background: @zel_backgroundColorTertiary; border: 1px solid @zel_separatorColorContent;
}
.gallery popover modelbutton { border-radius: 8px; color: @zel_labelColor; }
.gallery popover modelbutton:hover, .gallery popover modelbutton:selected,
.gallery popover row:hover {
    background: alpha(@zel_grayColor5, 0.2);
}
.gallery popover listview { background: none; color: @zel_labelColor; }
.gallery popover listview > row { border-radius: 8px; margin: 0 5px; }
.gallery popover listview > row:selected {
    background: @zel_accentColor; color: @zel_controlLabelColor;
}
)css";

constexpr const char* lists = R"css(
.list-frame { border: 1px solid @zel_separatorColorContent; border-radius: 8px; }
.list-header {
    background: @zel_tableSectionHeaderBackgroundColor;
    color: @zel_tableSectionHeaderTextColor;
    font-weight: bold; font-size: 9pt; padding: 7px 12px;
}
.list-frame list { background: @zel_tableBackgroundColor; color: @zel_tableTextColor; }
.list-frame row { padding: 15px 12px; border-top: 1px solid @zel_separatorColorContent; }
.list-frame row:hover { background: @zel_overlayTableBackgroundSelectedColor; }
.list-frame row:selected { background: @zel_accentColor; color: @zel_controlLabelColor; }
)css";

/// `#redColor.swatch-fill { background-color: @zel_redColor; }` for each attribute with a colour,
/// and the buttons that choose an accent.
std::string colored() {
    std::string rules = ".swatch-fill { transition: none; }\n";
#define GALLERY_ADD_Number(key)
#define GALLERY_ADD_Color(key)                                                                     \
    rules += "#" key ".swatch-fill { background-color: @zel_" key "; }\n";
#define GALLERY_ADD(key, Key, Kind, group) GALLERY_ADD_##Kind(#key)
    ZEL_STYLE_ATTRIBUTES(GALLERY_ADD)
#undef GALLERY_ADD
#undef GALLERY_ADD_Color
#undef GALLERY_ADD_Number
    for (const char* const name : {"blue", "purple", "pink", "orange", "green", "teal", "indigo"}) {
        rules += std::string(".gallery button.accent.") + name + " { background: @zel_" + name +
                 "Color; }\n";
    }
    return rules;
}

} // namespace

void useStyleSheet() {
    const std::string text = std::string(layout) + controls + lists + colored();
    GtkCssProvider* const provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, text.data(), static_cast<gssize>(text.size()));
    gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                               GTK_STYLE_PROVIDER(provider),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

} // namespace gallery
