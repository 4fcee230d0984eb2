// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>

#include <string_view>
#include <vector>

namespace zeltest {

/// A default colour as it is without system colours: in a scheme "dark", and in any other.
struct DefaultColor {
    std::string_view key;
    zel::NSColor dark;
    zel::NSColor other;
};

inline zel::NSColor white(double level) {
    return zel::NSColor::colorWithWhite(level, 1);
}
inline zel::NSColor level(double value, double alpha = 1) {
    return zel::NSColor::colorWithSRGBRed(value, value, value, alpha);
}
inline zel::NSColor sRGB(double red, double green, double blue, double alpha = 1) {
    return zel::NSColor::colorWithSRGBRed(red, green, blue, alpha);
}
inline DefaultColor both(std::string_view key, const zel::NSColor& color) {
    return {key, color, color};
}

/// The 21 base colours.
inline std::vector<DefaultColor> baseColors() {
    using zel::NSColor;
    return {
        {"grayColor", white(0.95), white(0.1)},
        {"grayColor2", white(0.82), white(0.2)},
        {"grayColor3", white(0.7), white(0.3333333333333333)},
        {"grayColor4", white(0.6666666666666666), white(0.38)},
        {"grayColor5", white(0.5), white(0.5)},
        {"grayColor6", white(0.38), white(0.6666666666666666)},
        {"grayColor7", white(0.3333333333333333), white(0.7)},
        {"grayColor8", white(0.22), white(0.82)},
        {"grayColor9", white(0.12), white(0.95)},
        both("whiteColor", NSColor::colorWithWhite(1, 1)),
        both("blackColor", NSColor::colorWithWhite(0, 1)),
        both("clearColor", NSColor::colorWithWhite(0, 0)),
        both("blueColor", sRGB(0, 0.47843137254901963, 1)),
        both("greenColor", sRGB(0.20392156862745098, 0.7803921568627451, 0.34901960784313724)),
        both("orangeColor", sRGB(1, 0.5843137254901961, 0)),
        both("purpleColor", sRGB(0.6862745098039216, 0.3215686274509804, 0.8705882352941177)),
        both("redColor", sRGB(1, 0.23137254901960785, 0.18823529411764706)),
        both("yellowColor", sRGB(1, 0.8, 0)),
        both("pinkColor", sRGB(1, 0.17647058823529413, 0.3333333333333333)),
        both("indigoColor", sRGB(0.34509803921568627, 0.33725490196078434, 0.8392156862745098)),
        both("tealColor", sRGB(0.35294117647058826, 0.7843137254901961, 0.9803921568627451)),
    };
}

/// The 33 semantic colours.
inline std::vector<DefaultColor> semanticColors() {
    const zel::NSColor blue = sRGB(0, 0.47843137254901963, 1);
    const zel::NSColor red = sRGB(1, 0.23137254901960785, 0.18823529411764706);
    return {
        {"backgroundColor", level(0), level(1)},
        {"backgroundColorSecondary", level(0.10980392156862745), level(0.9254901960784314)},
        {"backgroundColorTertiary", level(0.17254901960784313), level(1)},
        {"labelColor", level(1), level(0)},
        {"labelColorSecondary", level(0.92, 0.96), level(0.24, 0.6)},
        {"labelColorTertiary", level(0.92, 0.3), level(0.24, 0.3)},
        {"labelColorQuarternary", level(0.92, 0.16), level(0.24, 0.18)},
        {"accentColor", blue, blue},
        {"accentColorSecondary", sRGB(0, 0.47843137254901963, 1, 0.25),
         sRGB(0, 0.47843137254901963, 1, 0.15)},
        {"controlColor", blue, blue},
        {"controlLabelColor", white(1), white(1)},
        {"controlColorInactive", level(0.8), level(0.6)},
        {"controlLabelColorInactive", white(1), white(1)},
        {"controlColorUnselected", white(0.95), white(0.1)},
        {"controlLabelColorUnselected", white(0), white(0)},
        {"controlColorDestructive", red, red},
        {"controlLabelColorDestructive", white(1), white(1)},
        {"separatorColor", level(0.92, 0.3), level(0.24, 0.3)},
        {"separatorColorContent", level(0.92, 0.16), level(0.24, 0.18)},
        {"overlayTableBackgroundColor", white(0.12), white(1)},
        // Grey 0.12 of gamma 2.2 is sRGB 0.09607; brightened by 1.1.
        {"overlayTableBackgroundSelectedColor", level(0.105673316257530), level(0.9)},
        {"tableBackgroundColor", level(0), level(1)},
        {"tableBackgroundSelectedColor", level(0), level(0.9)},
        {"tableTextColor", white(1), white(0)},
        {"tableTextSelectedColor", white(1), white(0)},
        {"tableSectionHeaderTextColor", level(1), level(0)},
        {"tableSectionHeaderBackgroundColor", white(0.22), white(0.95)},
        {"navigationBarTextColor", white(1), white(0)},
        {"navigationBarTintColor", blue, blue},
        {"navigationBarBackgroundColor", white(0.12), white(0.9725)},
        {"toolbarTextColor", white(1), white(0)},
        {"toolbarTintColor", blue, blue},
        {"toolbarBackgroundColor", white(0.12), white(0.9725)},
    };
}

inline std::vector<DefaultColor> allColors() {
    auto colors = baseColors();
    for (const DefaultColor& each : semanticColors()) {
        colors.push_back(each);
    }
    return colors;
}

} // namespace zeltest
