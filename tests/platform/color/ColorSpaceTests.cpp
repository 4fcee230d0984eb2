// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/NSColorSpace.h>

#include "tests/support/Counts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <latch>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using zel::NSColor;
using zel::NSColorSpace;

const NSColorSpace* lateCustom = nullptr;

// Ends the process with 0 where spaces and system colours are still there. Does nothing in a
// process that has not set `lateCustom`.
struct CheckAtExit {
    CheckAtExit() = default;
    CheckAtExit(const CheckAtExit&) = delete;
    CheckAtExit& operator=(const CheckAtExit&) = delete;
    ~CheckAtExit() {
        if (lateCustom == nullptr) {
            return;
        }
        const NSColor white = NSColor::whiteColor();
        const bool lives =
            lateCustom->localizedName() == "a name too long for any short string" &&
            white.colorSpace().localizedName() == "Generic Gray Gamma 2.2" &&
            white.sRGBComponents() == zel::ZelRGBA{1, 1, 1, 1} &&
            zel::NSSystemColors::systemColors().blue == NSColor::colorWithWhite(0.25, 1);
        zeltest::endAtOnce(lives ? 0 : 1);
    }
};

// Stands before everything below, so that it ends after any static object that they bring to life.
const CheckAtExit checkAtExit{};

// Made before main runs, perhaps before any static of the library.
const NSColorSpace& earlyGray = NSColorSpace::genericGamma22GrayColorSpace();
const NSColorSpace& earlyCustom = NSColorSpace::customColorSpace("early", 3, false);
const NSColor earlyWhite = NSColor::whiteColor();
const auto earlyRGB = earlyWhite.sRGBComponents();

TEST(ColorSpace, BuiltInSpacesCountAlphaAmongTheirComponents) {
    EXPECT_EQ(NSColorSpace::sRGBColorSpace().numberOfComponents(), 4U);
    EXPECT_EQ(NSColorSpace::deviceRGBColorSpace().numberOfComponents(), 4U);
    EXPECT_EQ(NSColorSpace::genericGamma22GrayColorSpace().numberOfComponents(), 2U);
    EXPECT_EQ(NSColorSpace::deviceCMYKColorSpace().numberOfComponents(), 5U);
    EXPECT_TRUE(NSColorSpace::sRGBColorSpace().hasAlpha());
    EXPECT_TRUE(NSColorSpace::deviceRGBColorSpace().hasAlpha());
    EXPECT_TRUE(NSColorSpace::genericGamma22GrayColorSpace().hasAlpha());
    EXPECT_TRUE(NSColorSpace::deviceCMYKColorSpace().hasAlpha());
}

TEST(ColorSpace, BuiltInSpacesHaveNamesOfTheirOwn) {
    std::vector<std::string> names = {NSColorSpace::sRGBColorSpace().localizedName(),
                                      NSColorSpace::deviceRGBColorSpace().localizedName(),
                                      NSColorSpace::genericGamma22GrayColorSpace().localizedName(),
                                      NSColorSpace::deviceCMYKColorSpace().localizedName()};
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"Device CMYK", "Device RGB",
                                               "Generic Gray Gamma 2.2", "sRGB IEC61966-2.1"}));
}

TEST(ColorSpace, OnlyCmykOfTheBuiltInSpacesHasNoRGBForm) {
    EXPECT_TRUE(NSColorSpace::sRGBColorSpace().hasRGBForm());
    EXPECT_TRUE(NSColorSpace::deviceRGBColorSpace().hasRGBForm());
    EXPECT_TRUE(NSColorSpace::genericGamma22GrayColorSpace().hasRGBForm());
    EXPECT_FALSE(NSColorSpace::deviceCMYKColorSpace().hasRGBForm());
}

TEST(ColorSpace, ABuiltInSpaceIsOneObjectForTheWholeProcess) {
    EXPECT_EQ(&NSColorSpace::sRGBColorSpace(), &NSColorSpace::sRGBColorSpace());
    EXPECT_EQ(&NSColorSpace::deviceRGBColorSpace(), &NSColorSpace::deviceRGBColorSpace());
    EXPECT_EQ(&NSColorSpace::deviceCMYKColorSpace(), &NSColorSpace::deviceCMYKColorSpace());
    EXPECT_EQ(&NSColorSpace::genericGamma22GrayColorSpace(), &earlyGray);
    EXPECT_NE(&NSColorSpace::sRGBColorSpace(), &NSColorSpace::deviceRGBColorSpace());
}

TEST(ColorSpace, SpacesAndColoursAreReadyInStaticInitialisers) {
    EXPECT_EQ(earlyGray.numberOfComponents(), 2U);
    EXPECT_EQ(earlyCustom.localizedName(), "early");
    EXPECT_EQ(earlyCustom.numberOfComponents(), 3U);
    EXPECT_EQ(earlyWhite, NSColor::colorWithWhite(1, 1));
    EXPECT_EQ(earlyRGB, (zel::ZelRGBA{1, 1, 1, 1}));
}

TEST(ColorSpace, ACustomSpaceIsKeptAsItWasMade) {
    const NSColorSpace& lab = NSColorSpace::customColorSpace("Lab", 3, false);
    EXPECT_EQ(lab.localizedName(), "Lab");
    EXPECT_EQ(lab.numberOfComponents(), 3U);
    EXPECT_FALSE(lab.hasAlpha());
    EXPECT_FALSE(lab.hasRGBForm());

    const NSColorSpace& red = NSColorSpace::customColorSpace(
        "red only", 2, true, [](const double* components, double* rgba) noexcept {
            rgba[0] = components[0];
            rgba[1] = rgba[2] = 0;
            rgba[3] = components[1];
        });
    EXPECT_EQ(red.localizedName(), "red only");
    EXPECT_EQ(red.numberOfComponents(), 2U);
    EXPECT_TRUE(red.hasAlpha());
    EXPECT_TRUE(red.hasRGBForm());
}

TEST(ColorSpace, EqualRequestsForACustomSpaceGetTheSameOne) {
    const NSColorSpace::ToSRGB black = [](const double* /*components*/, double* rgba) noexcept {
        rgba[0] = rgba[1] = rgba[2] = 0;
        rgba[3] = 1;
    };
    const NSColorSpace* const space = &NSColorSpace::customColorSpace("twin", 3, false);
    EXPECT_EQ(&NSColorSpace::customColorSpace("twin", 3, false), space);
    EXPECT_NE(&NSColorSpace::customColorSpace("twins", 3, false), space);
    EXPECT_NE(&NSColorSpace::customColorSpace("twin", 4, false), space);
    EXPECT_NE(&NSColorSpace::customColorSpace("twin", 3, true), space);
    EXPECT_NE(&NSColorSpace::customColorSpace("twin", 3, false, black), space);
}

TEST(ColorSpace, ACustomSpaceMayHaveNoneToFiveComponents) {
    EXPECT_EQ(NSColorSpace::customColorSpace("none", 0, false).numberOfComponents(), 0U);
    EXPECT_EQ(NSColorSpace::customColorSpace("one", 1, true).numberOfComponents(), 1U);
    EXPECT_EQ(NSColorSpace::customColorSpace("five", 5, true).numberOfComponents(), 5U);
}

TEST(ColorSpace, ACustomSpaceOfTooManyComponentsRaises) {
    EXPECT_THROW(NSColorSpace::customColorSpace("six", 6, false), std::invalid_argument);
    EXPECT_THROW(NSColorSpace::customColorSpace("wrapped", static_cast<std::size_t>(-1), false),
                 std::invalid_argument);
}

TEST(ColorSpace, AlphaNeedsAComponentToHoldIt) {
    EXPECT_THROW(NSColorSpace::customColorSpace("alpha of nothing", 0, true),
                 std::invalid_argument);
}

TEST(ColorSpace, ASpaceThatRaisedLeavesTheLockFreeForOtherThreads) {
    EXPECT_THROW(NSColorSpace::customColorSpace("six", 6, false), std::invalid_argument);
    const NSColorSpace* made = nullptr;
    std::thread([&made] { made = &NSColorSpace::customColorSpace("next", 1, false); }).join();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->localizedName(), "next");
}

TEST(ColorSpace, CustomSpacesMadeOnManyThreadsAllStayWhereTheyAre) {
    constexpr std::size_t threadCount = 4;
    constexpr std::size_t spacesPerThread = 5000;
    std::array<std::vector<const NSColorSpace*>, threadCount> made;
    std::vector<std::thread> threads;
    std::latch allStarted(threadCount);
    for (std::size_t t = 0; t < threadCount; ++t) {
        threads.emplace_back([t, &made, &allStarted] {
            allStarted.arrive_and_wait();
            for (std::size_t i = 0; i < spacesPerThread; ++i) {
                const std::string name = std::to_string(t) + "/" + std::to_string(i);
                made[t].push_back(&NSColorSpace::customColorSpace(name, t + 1, false));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t t = 0; t < threadCount; ++t) {
        ASSERT_EQ(made[t].size(), spacesPerThread);
        for (std::size_t i = 0; i < spacesPerThread; ++i) {
            ASSERT_EQ(made[t][i]->localizedName(), std::to_string(t) + "/" + std::to_string(i));
            ASSERT_EQ(made[t][i]->numberOfComponents(), t + 1);
        }
    }
}

TEST(ColorConversion, ConversionGoesToSRGBAndDeviceRGB) {
    const NSColorSpace& sRGB = NSColorSpace::sRGBColorSpace();
    const NSColorSpace& device = NSColorSpace::deviceRGBColorSpace();
    EXPECT_EQ(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).colorUsingColorSpace(device),
              NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4).colorUsingColorSpace(sRGB),
              NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(NSColor::whiteColor().colorUsingColorSpace(sRGB),
              NSColor::colorWithSRGBRed(1, 1, 1, 1));
    const auto grey = NSColor::colorWithWhite(0.12, 0.7).colorUsingColorSpace(device);
    ASSERT_TRUE(grey.has_value());
    EXPECT_EQ(&grey->colorSpace(), &device);
    EXPECT_NEAR(grey->components()[0], 0.09606665114320914970, 1e-15);
    EXPECT_EQ(grey->components()[1], grey->components()[0]);
    EXPECT_EQ(grey->components()[2], grey->components()[0]);
    EXPECT_EQ(grey->components()[3], 0.7);
    EXPECT_EQ(grey->components()[4], 0);
}

TEST(ColorConversion, ConversionToTheOwnSpaceIsTheColourItself) {
    const NSColorSpace& lab = NSColorSpace::customColorSpace("Lab", 3, false);
    for (const NSColor& color :
         {NSColor::colorWithSRGBRed(2, 0.2, 0.3, 0.4), NSColor::colorWithDeviceRed(0, 0.2, 3, 0.4),
          NSColor::colorWithWhite(0.12, 0.5), NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5),
          NSColor::colorWithColorSpace(lab, {50, 20, -30})}) {
        EXPECT_EQ(color.colorUsingColorSpace(color.colorSpace()), color);
    }
}

TEST(ColorConversion, ConversionToAnyOtherSpaceGivesNothing) {
    const NSColor color = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);
    const NSColorSpace& custom = NSColorSpace::customColorSpace("custom", 4, true);
    EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::genericGamma22GrayColorSpace()),
              std::nullopt);
    EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::deviceCMYKColorSpace()), std::nullopt);
    EXPECT_EQ(color.colorUsingColorSpace(custom), std::nullopt);
}

TEST(ColorConversion, CmykAndPlainCustomColoursHaveNoRGBForm) {
    const NSColorSpace& custom = NSColorSpace::customColorSpace("custom", 4, true);
    for (const NSColor& color : {NSColor::colorWithDeviceCyan(0, 0, 0, 0, 1),
                                 NSColor::colorWithColorSpace(custom, {0.1, 0.2, 0.3, 1})}) {
        EXPECT_EQ(color.sRGBComponents(), std::nullopt);
        EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::sRGBColorSpace()), std::nullopt);
        EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::deviceRGBColorSpace()), std::nullopt);
    }
}

TEST(ColorConversion, ACustomSpaceMayBringItsOwnRGBForm) {
    const NSColorSpace& reversed = NSColorSpace::customColorSpace(
        "BGR", 3, false, [](const double* components, double* rgba) noexcept {
            rgba[0] = components[2];
            rgba[1] = components[1];
            rgba[2] = components[0];
            rgba[3] = 1;
        });
    const NSColor color = NSColor::colorWithColorSpace(reversed, {0.1, 0.2, 0.3});
    EXPECT_EQ(color.sRGBComponents(), (zel::ZelRGBA{0.3, 0.2, 0.1, 1}));
    EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::sRGBColorSpace()),
              NSColor::colorWithSRGBRed(0.3, 0.2, 0.1, 1));
    EXPECT_EQ(color.colorUsingColorSpace(NSColorSpace::deviceRGBColorSpace()),
              NSColor::colorWithDeviceRed(0.3, 0.2, 0.1, 1));
}

TEST(ColorSpaceDeathTest, SpacesAndSystemColoursStillAnswerWhileTheProcessEnds) {
    EXPECT_EXIT(
        {
            zel::NSSystemColors colors;
            colors.blue = NSColor::colorWithWhite(0.25, 1);
            zel::NSSystemColors::setSystemColors(colors);
            lateCustom =
                &NSColorSpace::customColorSpace("a name too long for any short string", 2, true);
            std::exit(3);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
