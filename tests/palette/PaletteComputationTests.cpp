// SPDX-License-Identifier: Apache-2.0
#include "palette/PaletteRow.h"

#include "tests/palette/PaletteFixture.h"

#include <algorithm>

namespace zeltest {
namespace {

using namespace zel;
using enum ZelStyleAttribute;

/// Palettes without any style: rows over presets.
class PaletteComputationTests : public ::testing::Test {
protected:
    using Value = std::optional<ZelAttributeValue>;

    const NSColor first = NSColor::colorWithDeviceRed(0.9, 0.1, 0.8, 0.7);
    const NSColor second = NSColor::colorWithWhite(0.25, 1);
    const ZelAttributeValue pattern{std::string("stripes")};
    const Value null = ZelAttributeValue(NSNull{});
    PaletteValues values;

    static constexpr PaletteRecipe recipe(double level) { return zel::white(level); }
    Value& preset(ZelStyleAttribute attribute) {
        return values.presets[static_cast<std::size_t>(attribute)];
    }
    const Value& written(ZelStyleAttribute attribute) const {
        return values.written[static_cast<std::size_t>(attribute)];
    }
    void compute(std::initializer_list<PaletteRow> rows, bool darkMode = false) {
        computePalette(std::span(rows.begin(), rows.size()), values, darkMode);
    }
};

TEST_F(PaletteComputationTests, ARowTakesItsDarkRecipeOrTheOther) {
    compute({always(LabelColor, recipe(0.25), recipe(0.75))}, true);
    EXPECT_EQ(written(LabelColor), Value(NSColor::colorWithWhite(0.25, 1)));
    compute({always(LabelColor, recipe(0.25), recipe(0.75))}, false);
    EXPECT_EQ(written(LabelColor), Value(NSColor::colorWithWhite(0.75, 1)));
}

TEST_F(PaletteComputationTests, ARowReadsWhatRowsAboveItWroteAndNotThoseBelow) {
    preset(AccentColor) = first;
    compute({always(ControlColor, copyOf(AccentColor)), always(AccentColor, recipe(0.25)),
             always(ToolbarTintColor, copyOf(AccentColor))});
    EXPECT_EQ(written(ControlColor), Value(first));
    EXPECT_EQ(written(ToolbarTintColor), Value(second));
}

TEST_F(PaletteComputationTests, ASecondPaletteReadsWhatTheFirstOneWrote) {
    compute({always(BlueColor, recipe(0.25))});
    compute({whenAbsent(AccentColor, copyOf(BlueColor)), whenAbsent(BlueColor, recipe(0.5))});
    EXPECT_EQ(written(AccentColor), Value(second));
    EXPECT_EQ(written(BlueColor), Value(second));
}

TEST_F(PaletteComputationTests, APresetOfAnyKindKeepsItsPlaceAndIsNotWritten) {
    preset(LabelColor) = first;
    preset(AccentColor) = pattern;
    preset(GrayColor) = ZelAttributeValue(NSNumber::numberWithUnsignedLong(0));
    compute({whenAbsent(LabelColor, recipe(0.5)), whenAbsent(AccentColor, recipe(0.5)),
             whenAbsent(GrayColor, recipe(0.5))});
    EXPECT_EQ(written(LabelColor), std::nullopt);
    EXPECT_EQ(written(AccentColor), std::nullopt);
    EXPECT_EQ(written(GrayColor), std::nullopt);
}

TEST_F(PaletteComputationTests, NullIsNoPreset) {
    preset(LabelColor) = null;
    compute({whenAbsent(LabelColor, recipe(0.25))});
    EXPECT_EQ(written(LabelColor), Value(second));
}

TEST_F(PaletteComputationTests, WhatIsWrittenAlwaysReplacesAPreset) {
    preset(LabelColor) = first;
    compute({always(LabelColor, recipe(0.25))});
    EXPECT_EQ(written(LabelColor), Value(second));
}

TEST_F(PaletteComputationTests, APlatformColourThatIsMissingHidesThePresetAndIsThenAbsent) {
    const auto missing = platform([] { return std::optional<NSColor>(); });
    preset(BlueColor) = first;
    preset(RedColor) = first;
    compute({always(BlueColor, missing), always(RedColor, missing),
             whenAbsent(BlueColor, recipe(0.25))});
    EXPECT_EQ(written(BlueColor), Value(second));
    EXPECT_EQ(written(RedColor), null);
}

TEST_F(PaletteComputationTests, WhatNeedsAnAbsentOrNullColourIsNull) {
    preset(AccentColor) = null;
    for (const ZelStyleAttribute source : {AccentColor, BlueColor}) {
        compute({always(ControlColor, copyOf(source)),
                 always(LabelColor, copyWithAlpha(source, 0.5)),
                 always(SeparatorColor, withEffect(source, ZelStyleEffectSelected))});
        EXPECT_EQ(written(ControlColor), null);
        EXPECT_EQ(written(LabelColor), null);
        EXPECT_EQ(written(SeparatorColor), null);
    }
}

TEST_F(PaletteComputationTests, AValueThatIsNoColourIsCopiedAsItIsAndHasNoAlphaOrEffect) {
    preset(AccentColor) = pattern;
    compute({always(ControlColor, copyOf(AccentColor)),
             always(LabelColor, copyWithAlpha(AccentColor, 0.5)),
             always(SeparatorColor, withEffect(AccentColor, ZelStyleEffectSelected))});
    EXPECT_EQ(written(ControlColor), Value(pattern));
    EXPECT_EQ(written(LabelColor), null);
    EXPECT_EQ(written(SeparatorColor), null);
}

TEST_F(PaletteComputationTests, NothingElseIsWritten) {
    compute({always(ControlColor, recipe(0.5))});
    EXPECT_EQ(std::ranges::count_if(values.written, [](const Value& each) { return !!each; }), 1);
    EXPECT_EQ(values.presets, PaletteValues().presets);
}

class PaletteWritingTests : public PaletteTests {};

TEST_F(PaletteWritingTests, AStylesPresetsAreItsEffectiveValuesOfAnyKind) {
    const ZelAttributeValue pattern(std::string("stripes"));
    const auto parent = alloc<ZelStyle>();
    parent->init();
    parent->setValue(pattern, "accentColor");
    parent->setBlueColor(white(0.5));
    const auto child = alloc<ZelStyle>()->initWithIdentifier("child", nullptr, parent);
    child->setStyleType(NSNumber::numberWithUnsignedLong(7));
    child->setBlueColor(std::nullopt);
    PaletteValues::Values expected;
    expected[static_cast<std::size_t>(AccentColor)] = pattern;
    expected[static_cast<std::size_t>(StyleType)] =
        ZelAttributeValue(NSNumber::numberWithUnsignedLong(7));
    EXPECT_EQ(presetsOf(*child).presets, expected);
    EXPECT_EQ(presetsOf(*child).written, PaletteValues::Values());
}

// What a child inherits is a preset like any other: a copy of its own would not follow its parent.
TEST_F(PaletteWritingTests, AProviderThatFillsAChildWritesNothingThatItInheritsAndKeeps) {
    const auto parent = makeStyle("light");
    const auto child = alloc<ZelStyle>()->initWithIdentifier("child", nullptr, parent);
    for (const Provider& each : registeredProviders()) {
        each->provideDefaultValuesFor(child, nullptr);
    }
    for (const std::string_view key :
         {"grayColor", "grayColor9", "whiteColor", "blackColor", "clearColor", "indigoColor",
          "tealColor", "backgroundColor", "labelColor", "accentColor"}) {
        EXPECT_EQ(child->valueForAttribute(key), std::nullopt) << key;
    }
    for (const std::string_view key :
         {"styleType", "blueColor", "pinkColor", "controlColor", "toolbarBackgroundColor"}) {
        EXPECT_TRUE(child->valueForAttribute(key)) << key;
    }
    expectOtherPalette(*child);
}

} // namespace
} // namespace zeltest
