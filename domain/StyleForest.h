// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace zel {
inline namespace v1 {

class ZelStyle;

/// Some styles and their ancestors, numbered so that a style and all that descend from it have
/// numbers without a gap: whether a style belongs to a family is then two comparisons.
/// Refers to: the styles, by serial, as they descended from each other when they were added.
class StyleForest {
public:
    /// The numbers of a style and its descendants, from `begin` up to before `end`.
    struct Family {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    void clear() noexcept;
    /// Adds a style with its ancestors, where they aren't there yet; answers its place for
    /// `numberAt`.
    std::uint32_t add(const std::shared_ptr<ZelStyle>& style);
    /// Gives all of them their numbers, after the last was added.
    void number();

    [[nodiscard]] std::uint32_t numberAt(std::uint32_t place) const { return nodes_[place].begin; }
    /// Empty where the style wasn't added, which then none of them descends from.
    [[nodiscard]] Family familyOf(const ZelStyle& style) const;

private:
    static constexpr std::uint32_t none = UINT32_MAX;
    struct Node {
        std::uint32_t parent = none;
        std::uint32_t firstChild = none;
        std::uint32_t nextSibling = none;
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    void numberTree(std::uint32_t root, std::uint32_t& next);

    std::vector<Node> nodes_;
    std::unordered_map<std::uint64_t, std::uint32_t> placesBySerial_;
};

} // namespace v1
} // namespace zel
