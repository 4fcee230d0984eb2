// SPDX-License-Identifier: Apache-2.0
#include "NamedColors.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace zel::inline v1 {
namespace {

/// A key may be any text: what an identifier can't hold is escaped by its number.
void appendName(std::string& text, std::string_view key) {
    text += "zel_";
    for (const char each : key) {
        const bool isPlain = g_ascii_isalnum(each) || each == '_' || each == '-' ||
                             (static_cast<unsigned char>(each) >= 0x80);
        if (isPlain) {
            text += each;
            continue;
        }
        std::array<char, 8> escape{};
        g_snprintf(escape.data(), escape.size(), "\\%x ", static_cast<unsigned>(each));
        text += escape.data();
    }
}

/// What is not a number counts as none of the colour.
double clamped(double component) {
    return component > 0 ? std::min(component, 1.0) : 0.0;
}

/// With a decimal point in every locale.
void appendNumber(std::string& text, double number) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> digits{};
    text += g_ascii_formatd(digits.data(), static_cast<int>(digits.size()), "%.6g", number);
}

void appendColor(std::string& text, const ZelRGBA& color) {
    text += " rgba(";
    for (const double component : {color.red, color.green, color.blue}) {
        appendNumber(text, clamped(component) * 255);
        text += ',';
    }
    appendNumber(text, clamped(color.alpha));
    text += ");\n";
}

} // namespace

std::string namedColorsOf(const ZelStyle& style) {
    std::string text;
    const auto values = style.effectiveValues();
    for (const auto& [key, value] : *values) {
        const NSColor* const color = value.color();
        const auto components = color ? color->sRGBComponents() : std::nullopt;
        if (components) {
            text += "@define-color ";
            appendName(text, key);
            appendColor(text, *components);
        }
    }
    return text;
}

} // namespace zel::inline v1
