// SPDX-License-Identifier: Apache-2.0
#include "domain/SortByOrder.h"

#include <gtest/gtest.h>

#include <random>

namespace {

struct Item {
    int tag;
    std::uint32_t order;
    friend bool operator==(const Item&, const Item&) = default;
};

/// Items of the orders 1000, 1000 + step and so on, in any order, above two that stay.
std::vector<Item> shuffled(std::size_t count, std::uint32_t step) {
    std::vector<Item> items{{-1, 9}, {-2, 7}};
    for (std::size_t i = 0; i < count; ++i) {
        items.push_back({static_cast<int>(i), static_cast<std::uint32_t>(1000 + i * step)});
    }
    std::mt19937 random(7);
    std::shuffle(items.begin() + 2, items.end(), random);
    return items;
}

class SortByOrderTests : public testing::TestWithParam<std::pair<std::size_t, std::uint32_t>> {};

TEST_P(SortByOrderTests, SortsWhatStandsAboveAndLeavesTheRest) {
    const auto [count, step] = GetParam();
    auto items = shuffled(count, step);
    zel::sortByOrder(items, 2);
    ASSERT_EQ(items.size(), count + 2);
    EXPECT_EQ(items[0], (Item{-1, 9}));
    EXPECT_EQ(items[1], (Item{-2, 7}));
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(items[i + 2].tag, static_cast<int>(i));
    }
}

// Few and many; orders of one digit, two, three and four.
INSTANTIATE_TEST_SUITE_P(Sizes, SortByOrderTests,
                         testing::Values(std::pair{0, 1}, std::pair{1, 1}, std::pair{2, 1},
                                         std::pair{31, 1}, std::pair{32, 1}, std::pair{1000, 1},
                                         std::pair{1025, 1}, std::pair{1000, 1000},
                                         std::pair{5000, 100'000}, std::pair{70'000, 60'000}));

} // namespace
