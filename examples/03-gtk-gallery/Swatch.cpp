// SPDX-License-Identifier: Apache-2.0
#include "Swatch.h"

#include "Card.h"

#include <ZelStyleKit/ZelGtkStyleable.h>
#include <ZelStyleKit/ZelStyle.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

namespace gallery {
namespace {

/// As on web pages, the opacity behind it where it shows through: "#007AFF", "#3D3D3D 60%".
std::string textOf(const zel::NSColor& color) {
    const auto components = color.sRGBComponents();
    if (!components) {
        return "";
    }
    const auto byte = [](double component) {
        return static_cast<unsigned>(std::lround(component * 255));
    };
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", byte(components->red),
                  byte(components->green), byte(components->blue));
    const long percent = std::lround(components->alpha * 100);
    return text.data() + (percent == 100 ? "" : " " + std::to_string(percent) + "%");
}

/// A style's type, the one attribute that is a number.
std::string textOf(const zel::ZelAttributeValue& value) {
    const unsigned long type = value.number() ? value.number()->unsignedLongValue() : 0;
    return type == zel::ZelStyleTypeDark    ? "2, dark"
           : type == zel::ZelStyleTypeLight ? "1, light"
                                            : "0, custom";
}

std::string valueOf(const zel::ZelStyle& style, std::string_view key) {
    const auto value = style.effectiveValueForAttribute(key);
    if (!value) {
        return "none";
    }
    return value->color() ? textOf(*value->color()) : textOf(*value);
}

} // namespace

GtkWidget* makeSwatch(zel::ZelStyleAttribute attribute) {
    const std::string key(zel::ZelStyleAttributeKeyOf(attribute));
    GtkWidget* const fill = makeBox(GTK_ORIENTATION_VERTICAL, 0, swatchFillClass);
    gtk_widget_set_name(fill, key.c_str());
    gtk_widget_set_hexpand(fill, TRUE);
    gtk_widget_set_vexpand(fill, TRUE);
    GtkWidget* const ground = makeBox(GTK_ORIENTATION_VERTICAL, 0, "swatch-ground");
    gtk_widget_set_valign(ground, GTK_ALIGN_CENTER);
    gtk_widget_set_hexpand(ground, FALSE); // what is in it does
    gtk_widget_set_overflow(ground, GTK_OVERFLOW_HIDDEN);
    gtk_box_append(GTK_BOX(ground), fill);
    if (attribute == zel::ZelStyleAttribute::StyleType) { // the one that is no colour
        gtk_widget_add_css_class(fill, "swatch-number");
    }

    GtkWidget* const name = makeText(key.c_str(), "swatch-name");
    gtk_label_set_ellipsize(GTK_LABEL(name), PANGO_ELLIPSIZE_END);
    gtk_widget_set_tooltip_text(name, key.c_str());
    GtkWidget* const value = makeText("", "swatch-value");
    GtkWidget* const words = makeBox(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(words), name);
    gtk_box_append(GTK_BOX(words), value);
    GtkWidget* const swatch = makeBox(GTK_ORIENTATION_HORIZONTAL, 8, "swatch");
    gtk_widget_set_hexpand(swatch, TRUE);
    gtk_box_append(GTK_BOX(swatch), ground);
    gtk_box_append(GTK_BOX(swatch), words);

    zel::ZelGtkStyleable::of(value)->registerStyleableChangeHandler(
        [key, label = GTK_LABEL(value)](const auto&, const auto& style, auto) {
            gtk_label_set_text(label, style ? valueOf(*style, key).c_str() : "");
        });
    return swatch;
}

} // namespace gallery
