// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zel {
inline namespace v1 {

/// Puts items in the order of one digit of their `order`'s distance from `base`, those of the same
/// digit staying as they stand.
template <class Item>
void placeByDigit(const Item* from, Item* to, std::size_t count, std::uint32_t base, unsigned shift,
                  unsigned width) {
    constexpr std::size_t mostDigits = 1024;
    const auto digitOf = [&](const Item& item) {
        return (item.order - base) >> shift & ((1U << width) - 1);
    };
    std::array<std::uint32_t, mostDigits> places; // of the digits there are, no others
    std::uint32_t* const digitsEnd = places.data() + (std::size_t{1} << width);
    std::fill(places.data(), digitsEnd, 0U);
    for (const Item* each = from; each != from + count; ++each) {
        ++places[digitOf(*each)];
    }
    std::uint32_t next = 0;
    std::for_each(places.data(), digitsEnd,
                  [&](std::uint32_t& place) { next += std::exchange(place, next); });
    for (const Item* each = from; each != from + count; ++each) {
        to[places[digitOf(*each)]++] = *each;
    }
}

/// Sorts the items from `begin` on by their `order`, no two of which are the same. Digit by digit
/// from the last one, without a comparison to mispredict: the listeners of a subtree are found in
/// the tree's order and called in that of their registration. The vector is a scratch that keeps
/// what it once allocated.
template <class Item>
void sortByOrder(std::vector<Item>& items, std::size_t begin) {
    constexpr std::size_t fewest = 32; // below, comparing is faster
    constexpr unsigned widest = 10;    // bits of a digit
    const auto first = items.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto byOrder = [](const Item& a, const Item& b) { return a.order < b.order; };
    if (std::is_sorted(first, items.end(), byOrder)) {
        return;
    }
    const std::size_t count = items.size() - begin;
    if (count < fewest) {
        std::sort(first, items.end(), byOrder);
        return;
    }
    const auto [lowest, highest] = std::minmax_element(first, items.end(), byOrder);
    const std::uint32_t base = lowest->order;
    const auto bits = static_cast<unsigned>(std::bit_width(highest->order - base));
    const unsigned digits = (bits + widest - 1) / widest;
    const unsigned width = (bits + digits - 1) / digits;
    items.resize(begin + 2 * count);
    Item* from = items.data() + begin;
    Item* to = from + count;
    for (unsigned digit = 0; digit < digits; ++digit) {
        placeByDigit(from, to, count, base, digit * width, width);
        std::swap(from, to);
    }
    if (from != items.data() + begin) {
        std::copy(from, from + count, to);
    }
    items.resize(begin + count);
}

} // namespace v1
} // namespace zel
