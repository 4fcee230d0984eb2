// SPDX-License-Identifier: Apache-2.0
#include "tests/palette/PaletteFixture.h"

namespace zeltest {
namespace {

using namespace zel;

using Names = std::vector<std::string>;

/// What a client's own static initialiser finds, whichever of the program's run before it.
struct Early {
    std::shared_ptr<ZelStyle> style = alloc<ZelStyle>()->initWithIdentifier("early", nullptr);
    std::size_t values = style->effectiveValues()->size();
    std::optional<NSColor> indigo = style->indigoColor();
    std::optional<NSColor> label = style->labelColor();
    std::optional<ZelAttributeValue> type =
        style->effectiveValueForAttribute(ZelStyleAttributeKeyStyleType);
    std::optional<ZelAttributeValue> header =
        style->effectiveValueForAttribute(ZelStyleAttributeKeyTableSectionHeaderBackgroundColor);
    Names providers = registeredIdentifiers();
};

const Early early;

class LoadTests : public PaletteTests {};

TEST_F(LoadTests, AStaticInitialiserFindsBothBuiltInProvidersRun) {
    EXPECT_EQ(early.providers, (Names{"main", "base"}));
    EXPECT_EQ(early.values, 55U);
    EXPECT_EQ(early.type, ZelAttributeValue(NSNumber::numberWithUnsignedLong(0)));
    EXPECT_EQ(early.indigo, NSColor::colorWithSRGBRed(88.0 / 255, 86.0 / 255, 214.0 / 255, 1));
    EXPECT_EQ(early.label, NSColor::colorWithSRGBRed(0, 0, 0, 1));
    EXPECT_EQ(early.header, ZelAttributeValue(NSColor::colorWithWhite(0.95, 1)));
    expectOtherPalette(*early.style);
}

TEST_F(LoadTests, TheBuiltInProvidersSetNoHookAndMainRequiresBase) {
    const Providers found = registeredProviders();
    ASSERT_EQ(found.size(), 2U);
    const auto& main = found[0];
    const auto& base = found[1];
    EXPECT_EQ(main->identifier(), "main");
    EXPECT_EQ(main->requiredDefaultValueProviders(),
              ZelStyleDefaultValueProvider::Identifiers{"base"});
    EXPECT_EQ(base->identifier(), "base");
    EXPECT_EQ(base->requiredDefaultValueProviders(), std::nullopt);
    for (const Provider& each : found) {
        EXPECT_TRUE(each->providerBlock());
        EXPECT_FALSE(each->willApplyBlock());
        EXPECT_FALSE(each->didApplyBlock());
    }
}

TEST_F(LoadTests, BaseRunsBeforeMain) {
    Names order;
    addProvider("client")->setDidApplyBlock(
        [&](auto&&, auto&&, auto&&, const Provider& ran) { order.push_back(*ran->identifier()); });
    (void)makeStyle("light");
    EXPECT_EQ(order, (Names{"base", "client", "main"})) << "main waits for the second pass";
}

TEST_F(LoadTests, LoadingAgainRegistersAgain) {
    ZelStyle::load();
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "main", "base", "base"}));
    expectOtherPalette(*makeStyle("light"));
}

TEST_F(LoadTests, EachLoaderRegistersItsOwnProvider) {
    removeAllProviders();
    ZelStyle::loadBase();
    EXPECT_EQ(registeredIdentifiers(), Names{"base"});
    const auto style = makeStyle("dark");
    EXPECT_EQ(style->effectiveValues()->size(), 22U) << "21 colours and the type";
    for (const DefaultColor& each : baseColors()) {
        expectColor(*style, each.key, each.dark);
    }
    ZelStyle::loadMain();
    EXPECT_EQ(registeredIdentifiers(), (Names{"main", "base"}));
    expectDarkPalette(*makeStyle("dark"));
}

TEST_F(LoadTests, MainNeverRunsWithoutBase) {
    removeAllProviders();
    ZelStyle::loadMain();
    EXPECT_TRUE(makeStyle("light")->effectiveValues()->empty());
}

} // namespace
} // namespace zeltest
