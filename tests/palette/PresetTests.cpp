// SPDX-License-Identifier: Apache-2.0
#include "tests/palette/PaletteFixture.h"

namespace zeltest {
namespace {

using namespace zel;

/// What a client writes; no default is it.
const NSColor preset = NSColor::colorWithDeviceRed(0.9, 0.1, 0.8, 0.7);

class PresetTests : public PaletteTests {
protected:
    /// A style that a client's hook gave one colour before a provider ran.
    static Style presetStyle(std::string_view key, std::string before,
                             std::string_view scheme = "light") {
        const ProvidersRestored restored;
        presetBefore(std::move(before), std::string(key), ZelAttributeValue(preset));
        return makeStyle(scheme);
    }
};

TEST_F(PresetTests, ColoursThatArePresetBeforeTheBasePaletteAreKept) {
    for (const std::string_view key : {"grayColor",
                                       "grayColor2",
                                       "grayColor3",
                                       "grayColor4",
                                       "grayColor5",
                                       "grayColor6",
                                       "grayColor7",
                                       "grayColor8",
                                       "grayColor9",
                                       "whiteColor",
                                       "blackColor",
                                       "clearColor",
                                       "indigoColor",
                                       "tealColor",
                                       "backgroundColor",
                                       "backgroundColorSecondary",
                                       "backgroundColorTertiary",
                                       "labelColor",
                                       "labelColorSecondary",
                                       "labelColorTertiary",
                                       "labelColorQuarternary",
                                       "accentColor",
                                       "accentColorSecondary"}) {
        EXPECT_EQ(colorOf(presetStyle(key, "base"), key), preset) << key;
        EXPECT_EQ(colorOf(presetStyle(key, "base", "dark"), key), preset) << key;
    }
}

TEST_F(PresetTests, EveryOtherSemanticColourIsComputedAnewWhateverWasPreset) {
    const auto colors = semanticColors();
    ASSERT_EQ(colors[9].key, "controlColor");
    for (std::size_t i = 9; i < colors.size(); ++i) {
        expectColor(*presetStyle(colors[i].key, "main"), colors[i].key, colors[i].other);
        expectColor(*presetStyle(colors[i].key, "main", "dark"), colors[i].key, colors[i].dark);
    }
}

TEST_F(PresetTests, APresetHueIsReplacedByThePlatforms) {
    const NSColor platforms = NSColor::colorWithDeviceRed(0.25, 0.5, 0.75, 1);
    NSSystemColors::setSystemColors({.blue = platforms,
                                     .green = platforms,
                                     .orange = platforms,
                                     .purple = platforms,
                                     .red = platforms,
                                     .yellow = platforms,
                                     .pink = platforms,
                                     .windowBackground = std::nullopt});
    for (const std::string_view key : {"blueColor", "greenColor", "orangeColor", "purpleColor",
                                       "redColor", "yellowColor", "pinkColor"}) {
        EXPECT_EQ(colorOf(presetStyle(key, "base"), key), platforms) << key;
    }
    EXPECT_EQ(colorOf(presetStyle("indigoColor", "base"), "indigoColor"), preset);
    EXPECT_EQ(colorOf(presetStyle("tealColor", "base"), "tealColor"), preset);
}

TEST_F(PresetTests, APresetHueGivesWayToTheFallbackWhereThePlatformHasNone) {
    for (const DefaultColor& each : baseColors()) {
        for (const std::string_view hue : {"blueColor", "greenColor", "orangeColor", "purpleColor",
                                           "redColor", "yellowColor", "pinkColor"}) {
            if (each.key == hue) {
                expectColor(*presetStyle(hue, "base"), hue, each.other);
            }
        }
    }
}

TEST_F(PresetTests, AHueThatIsWrittenBetweenThePalettesReachesTheSemanticColours) {
    const auto style = presetStyle("blueColor", "main");
    EXPECT_EQ(style->blueColor(), preset);
    EXPECT_EQ(style->accentColor(), preset);
}

TEST_F(PresetTests, APresetStyleTypeIsReplaced) {
    presetBefore("base", "styleType", ZelAttributeValue(NSNumber::numberWithUnsignedLong(7)));
    EXPECT_EQ(makeStyle("dark")->styleType(), NSNumber::numberWithUnsignedLong(2));
    EXPECT_EQ(makeStyle("light")->styleType(), NSNumber::numberWithUnsignedLong(1));
    EXPECT_EQ(makeStyle("sepia")->styleType(), NSNumber::numberWithUnsignedLong(0));
}

TEST_F(PresetTests, NilIsNoPreset) {
    for (const DefaultColor& each : allColors()) {
        const ProvidersRestored restored;
        presetBefore("base", std::string(each.key), std::nullopt);
        expectColor(*makeStyle("light"), each.key, each.other);
    }
}

TEST_F(PresetTests, APresetAccentTintsControlsAndBars) {
    for (const std::string_view scheme : {"light", "dark"}) {
        const auto style = presetStyle("accentColor", "base", scheme);
        EXPECT_EQ(style->accentColor(), preset);
        EXPECT_EQ(style->controlColor(), preset);
        EXPECT_EQ(style->navigationBarTintColor(), preset);
        EXPECT_EQ(style->toolbarTintColor(), preset);
        EXPECT_EQ(style->accentColorSecondary(),
                  NSColor::colorWithDeviceRed(0.9, 0.1, 0.8, scheme == "dark" ? 0.25 : 0.15))
            << "its alpha is replaced, not multiplied";
    }
}

TEST_F(PresetTests, APresetSecondAccentIsKeptBesideAPresetAccent) {
    presetBefore("main", [](ZelStyle& style) {
        style.setAccentColor(preset);
        style.setAccentColorSecondary(white(0.5));
    });
    EXPECT_EQ(makeStyle("light")->accentColorSecondary(), white(0.5));
}

TEST_F(PresetTests, APresetSeparatorIsReplacedByTheThirdLabelColour) {
    presetBefore("main", [](ZelStyle& style) {
        style.setSeparatorColor(white(0.5));
        style.setLabelColorTertiary(preset);
    });
    EXPECT_EQ(makeStyle("light")->separatorColor(), preset);
    EXPECT_EQ(makeStyle("dark")->separatorColor(), preset);
}

struct Copy {
    std::string_view source;
    std::string_view copy;
    bool inDark;
    bool inOther;
};

constexpr Copy copies[] = {
    {"blueColor", "accentColor", true, true},
    {"accentColor", "controlColor", true, true},
    {"whiteColor", "controlLabelColor", true, true},
    {"whiteColor", "controlLabelColorInactive", true, true},
    {"grayColor", "controlColorUnselected", true, true},
    {"blackColor", "controlLabelColorUnselected", true, true},
    {"redColor", "controlColorDestructive", true, true},
    {"whiteColor", "controlLabelColorDestructive", true, true},
    {"labelColorTertiary", "separatorColor", true, true},
    {"labelColorQuarternary", "separatorColorContent", true, true},
    {"grayColor9", "overlayTableBackgroundColor", true, false},
    {"whiteColor", "overlayTableBackgroundColor", false, true},
    {"backgroundColor", "tableBackgroundColor", true, true},
    {"whiteColor", "tableTextColor", true, false},
    {"blackColor", "tableTextColor", false, true},
    {"whiteColor", "tableTextSelectedColor", true, false},
    {"blackColor", "tableTextSelectedColor", false, true},
    {"labelColor", "tableSectionHeaderTextColor", true, true},
    {"grayColor8", "tableSectionHeaderBackgroundColor", true, false},
    {"grayColor9", "tableSectionHeaderBackgroundColor", false, true},
    {"whiteColor", "navigationBarTextColor", true, false},
    {"blackColor", "navigationBarTextColor", false, true},
    {"accentColor", "navigationBarTintColor", true, true},
    {"grayColor9", "navigationBarBackgroundColor", true, false},
    {"whiteColor", "toolbarTextColor", true, false},
    {"blackColor", "toolbarTextColor", false, true},
    {"accentColor", "toolbarTintColor", true, true},
    {"grayColor9", "toolbarBackgroundColor", true, false},
};

TEST_F(PresetTests, EveryCopyFollowsItsSourceInItsScheme) {
    for (const auto& [source, copy, inDark, inOther] : copies) {
        const auto dark = presetStyle(source, "main", "dark");
        const auto other = presetStyle(source, "main", "sepia");
        EXPECT_EQ(colorOf(dark, copy) == preset, inDark) << source << " to " << copy;
        EXPECT_EQ(colorOf(other, copy) == preset, inOther) << source << " to " << copy;
    }
}

TEST_F(PresetTests, SelectedBackgroundsAreEffectsOnThePresetColours) {
    presetBefore("main", [](ZelStyle& style) {
        style.setBackgroundColor(sRGB(0.5, 0.6, 0.7, 0.8));
        style.setGrayColor9(sRGB(0.3, 0.3, 0.3, 1));
        style.setWhiteColor(sRGB(0.2, 0.4, 0.6, 0.8));
    });
    const auto dark = makeStyle("dark");
    expectColor(*dark, "tableBackgroundSelectedColor", sRGB(0.55, 0.66, 0.77, 0.8));
    expectColor(*dark, "overlayTableBackgroundSelectedColor", sRGB(0.33, 0.33, 0.33, 1));
    const auto light = makeStyle("light");
    expectColor(*light, "tableBackgroundSelectedColor", sRGB(0.45, 0.54, 0.63, 0.8));
    expectColor(*light, "overlayTableBackgroundSelectedColor", sRGB(0.18, 0.36, 0.54, 0.8));
}

TEST_F(PresetTests, ThePaletteGoesByTheSchemeAndNotByTheStyleType) {
    presetBefore("main", [](ZelStyle& style) {
        style.setStyleType(NSNumber::numberWithUnsignedLong(style.isDarkStyle() ? 1 : 2));
    });
    const auto dark = makeStyle("dark");
    expectDarkPalette(*dark);
    EXPECT_TRUE(dark->isLightStyle()) << "the second palette leaves the type alone";
    const auto light = makeStyle("light");
    expectOtherPalette(*light);
    EXPECT_TRUE(light->isDarkStyle());
}

TEST_F(PresetTests, WhatComesFromAnAbsentColourIsTheNullMarker) {
    const Providers builtIn = registeredProviders();
    ZelStyle::removeDefaultValueProvider(builtIn[1]);
    ASSERT_EQ(registeredIdentifiers(), std::vector<std::string>{"main"});
    addProvider("base"); // writes nothing
    const auto style = makeStyle("dark");
    for (const std::string_view key : {"accentColor",
                                       "accentColorSecondary",
                                       "controlColor",
                                       "controlLabelColor",
                                       "controlLabelColorInactive",
                                       "controlColorUnselected",
                                       "controlLabelColorUnselected",
                                       "controlColorDestructive",
                                       "controlLabelColorDestructive",
                                       "overlayTableBackgroundColor",
                                       "overlayTableBackgroundSelectedColor",
                                       "tableTextColor",
                                       "tableTextSelectedColor",
                                       "tableSectionHeaderBackgroundColor",
                                       "navigationBarTextColor",
                                       "navigationBarTintColor",
                                       "navigationBarBackgroundColor",
                                       "toolbarTextColor",
                                       "toolbarTintColor",
                                       "toolbarBackgroundColor"}) {
        const auto value = style->valueForAttribute(key);
        ASSERT_TRUE(value) << key;
        EXPECT_TRUE(value->isNull()) << key;
        EXPECT_EQ(style->effectiveValueForAttribute(key), std::nullopt) << key;
    }
    EXPECT_EQ(style->tableBackgroundSelectedColor(), NSColor::colorWithSRGBRed(0, 0, 0, 1));
    EXPECT_EQ(style->effectiveValues()->size(), 33U);
    EXPECT_TRUE(style->isCustomStyle()) << "no type was written";
}

TEST_F(PresetTests, APresetThatIsNoColourCountsAsPresentAndIsCopiedAsItIs) {
    const ZelAttributeValue pattern(std::string("stripes"));
    presetBefore("base", "accentColor", pattern);
    const auto style = makeStyle("light");
    EXPECT_EQ(style->valueForAttribute("accentColor"), pattern);
    EXPECT_EQ(style->valueForAttribute("controlColor"), pattern);
    EXPECT_TRUE(style->valueForAttribute("accentColorSecondary")->isNull());
}

} // namespace
} // namespace zeltest
