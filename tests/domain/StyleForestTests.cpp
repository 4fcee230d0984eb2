// SPDX-License-Identifier: Apache-2.0
#include "domain/StyleForest.h"
#include "tests/support/Styling.h"

namespace zeltest {
namespace {

using namespace zel;

class StyleForestTests : public StylingTests {
protected:
    const std::shared_ptr<ZelStyle> root =
        addStyle(ZelStyleDomain::defaultDomain()->defaultScheme(), "root");
    StyleForest forest;

    bool isInFamily(std::uint32_t place, const std::shared_ptr<ZelStyle>& style) {
        const auto family = forest.familyOf(*style);
        return forest.numberAt(place) >= family.begin && forest.numberAt(place) < family.end;
    }
};

TEST_F(StyleForestTests, AFamilyIsAStyleAndWhatDescendsFromIt) {
    const auto left = addChildStyle(root, "left");
    const auto right = addChildStyle(root, "right");
    const auto below = addChildStyle(left, "below");
    const auto belowPlace = forest.add(below);
    const auto rightPlace = forest.add(right);
    const auto leftPlace = forest.add(left);
    EXPECT_EQ(forest.add(below), belowPlace);
    forest.number();
    EXPECT_TRUE(isInFamily(belowPlace, root));
    EXPECT_TRUE(isInFamily(belowPlace, left));
    EXPECT_TRUE(isInFamily(belowPlace, below));
    EXPECT_FALSE(isInFamily(belowPlace, right));
    EXPECT_TRUE(isInFamily(rightPlace, root));
    EXPECT_FALSE(isInFamily(rightPlace, left));
    EXPECT_TRUE(isInFamily(leftPlace, left));
    EXPECT_FALSE(isInFamily(leftPlace, below));
}

TEST_F(StyleForestTests, AStyleThatWasNotAddedHasNoFamily) {
    const auto other = addChildStyle(root, "other");
    const auto place = forest.add(root);
    forest.number();
    EXPECT_FALSE(isInFamily(place, other));
}

TEST_F(StyleForestTests, ADeepChainIsNumberedWithoutOverflow) {
    std::vector<std::shared_ptr<ZelStyle>> chain{root};
    for (int i = 0; i < 20'000; ++i) {
        chain.push_back(addChildStyle(chain.back(), "child"));
    }
    const auto last = forest.add(chain.back());
    const auto first = forest.add(chain.front());
    forest.number();
    EXPECT_TRUE(isInFamily(last, chain.front()));
    EXPECT_TRUE(isInFamily(last, chain[10'000]));
    EXPECT_FALSE(isInFamily(first, chain[1]));
}

} // namespace
} // namespace zeltest
