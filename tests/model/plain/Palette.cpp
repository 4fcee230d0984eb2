// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/World.h"

namespace plain {

namespace {

bool isDark(const Ref<Scheme>& scheme) {
    return scheme && scheme->identifier() == "dark";
}

/// Writes a value where there is none yet.
void fill(Style& style, const std::string& key, const std::optional<Value>& value) {
    if (!style.effectiveValueForAttribute(key)) {
        style.setValue(value, key);
    }
}

Color gray255(double red, double green, double blue) {
    return Color::colorWithSRGBRed(red / 255, green / 255, blue / 255, 1);
}

Color level(double value, double alpha) {
    return Color::colorWithSRGBRed(value, value, value, alpha);
}

void fillMain(Style& style, bool dark) {
    const auto window = world().systemColors.find("windowBackground");
    fill(style, "backgroundColor", level(dark ? 0 : 1, 1));
    fill(style, "backgroundColorSecondary",
         dark                                   ? gray255(28, 28, 28)
         : window != world().systemColors.end() ? window->second
                                                : gray255(236, 236, 236));
    fill(style, "backgroundColorTertiary", dark ? gray255(44, 44, 44) : level(1, 1));
    fill(style, "labelColor", level(dark ? 1 : 0, 1));
    fill(style, "labelColorSecondary", dark ? level(0.92, 0.96) : level(0.24, 0.6));
    fill(style, "labelColorTertiary", level(dark ? 0.92 : 0.24, 0.3));
    fill(style, "labelColorQuarternary", dark ? level(0.92, 0.16) : level(0.24, 0.18));
    fill(style, "accentColor", style.effectiveValueForAttribute("blueColor"));
    const auto accent = style.color("accentColor");
    fill(style, "accentColorSecondary",
         accent ? std::optional<Value>(accent->colorWithAlphaComponent(dark ? 0.25 : 0.15))
                : std::nullopt);
}

} // namespace

void provideBase(Style& style, const Ref<Scheme>& scheme) {
    const bool dark = isDark(scheme);
    const bool light = scheme && scheme->identifier() == "light";
    style.setValue(std::uint64_t{dark ? 2U : light ? 1U : 0U}, "styleType");
    for (const char* hue : {"blue", "green", "orange", "purple", "red", "yellow", "pink"}) {
        const auto found = world().systemColors.find(hue);
        const bool present = found != world().systemColors.end();
        style.setValue(present ? std::optional<Value>(found->second) : std::nullopt,
                       std::string(hue) + "Color");
    }
    fill(style, "blackColor", Color::colorWithWhite(0, 1));
    fill(style, "whiteColor", Color::colorWithWhite(1, 1));
    fill(style, "clearColor", Color::colorWithWhite(0, 0));
    fill(style, "grayColor", Color::colorWithWhite(dark ? 0.95 : 0.1, 1));
    const double darks[] = {0.82, 0.7, 2.0 / 3, 0.5, 0.38, 1.0 / 3, 0.22, 0.12};
    const double lights[] = {0.2, 1.0 / 3, 0.38, 0.5, 2.0 / 3, 0.7, 0.82, 0.95};
    for (std::size_t i = 0; i < 8; ++i) {
        fill(style, "grayColor" + std::to_string(i + 2),
             Color::colorWithWhite(dark ? darks[i] : lights[i], 1));
    }
    fill(style, "blueColor", gray255(0, 122, 255));
    fill(style, "greenColor", gray255(52, 199, 89));
    fill(style, "orangeColor", gray255(255, 149, 0));
    fill(style, "purpleColor", gray255(175, 82, 222));
    fill(style, "redColor", gray255(255, 59, 48));
    fill(style, "yellowColor", gray255(255, 204, 0));
    fill(style, "indigoColor", gray255(88, 86, 214));
    fill(style, "pinkColor", gray255(255, 45, 85));
    fill(style, "tealColor", gray255(90, 200, 250));
}

void provideMain(Style& style, const Ref<Scheme>& scheme) {
    const bool dark = isDark(scheme);
    fillMain(style, dark);
    const auto copy = [&](const std::string& to, const char* from) {
        style.setValue(style.effectiveValueForAttribute(from), to);
    };
    const auto selected = [&](const char* to, const char* from) {
        const auto color = style.color(from);
        style.setValue(color ? std::optional<Value>(color->colorWithZelStyleEffect(1, dark))
                             : std::nullopt,
                       to);
    };
    copy("controlColor", "accentColor");
    copy("controlLabelColor", "whiteColor");
    style.setValue(level(dark ? 0.8 : 0.6, 1), "controlColorInactive");
    copy("controlLabelColorInactive", "controlLabelColor");
    copy("controlColorUnselected", "grayColor");
    copy("controlLabelColorUnselected", "blackColor");
    copy("controlColorDestructive", "redColor");
    copy("controlLabelColorDestructive", "whiteColor");
    copy("separatorColor", "labelColorTertiary");
    copy("separatorColorContent", "labelColorQuarternary");
    copy("overlayTableBackgroundColor", dark ? "grayColor9" : "whiteColor");
    selected("overlayTableBackgroundSelectedColor", "overlayTableBackgroundColor");
    copy("tableBackgroundColor", "backgroundColor");
    selected("tableBackgroundSelectedColor", "backgroundColor");
    copy("tableTextColor", dark ? "whiteColor" : "blackColor");
    copy("tableTextSelectedColor", "tableTextColor");
    copy("tableSectionHeaderTextColor", "labelColor");
    copy("tableSectionHeaderBackgroundColor", dark ? "grayColor8" : "grayColor9");
    for (const std::string bar : {"navigationBar", "toolbar"}) {
        copy(bar + "TextColor", dark ? "whiteColor" : "blackColor");
        copy(bar + "TintColor", "accentColor");
        style.setValue(dark ? style.effectiveValueForAttribute("grayColor9")
                            : Color::colorWithWhite(0.9725, 1),
                       bar + "BackgroundColor");
    }
}

} // namespace plain
