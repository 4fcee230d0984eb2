// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Player.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zeltest {

using Arguments = std::array<unsigned, 4>;

/// One operation that a script may name, how often it is drawn, and what it does to a side.
template <class Kit>
struct Command {
    std::string_view name;
    unsigned weight;
    void (*run)(Player<Kit>& player, const Arguments& arguments);
};

template <class Kit>
const std::vector<Command<Kit>>& commands();

// What the arguments of operations stand for.

template <class List>
auto& slot(List& list, unsigned number) {
    return list[number % list.size()];
}

/// A copy: what is passed on stays the same, whatever callbacks put into the slot.
template <class List>
auto at(const List& list, unsigned number) {
    return list[number % list.size()];
}

inline std::optional<std::string> styleIdentifier(unsigned number) {
    static const std::array<std::optional<std::string>, 6> all = {"main", "accent", "main",
                                                                  "card", "",       std::nullopt};
    return at(all, number);
}

inline std::optional<std::string> schemeIdentifier(unsigned number) {
    static const std::array<std::optional<std::string>, 8> all = {
        "light", "dark", "default", "dark", "light", "other", std::nullopt, "default"};
    return at(all, number);
}

inline std::optional<std::string> domainIdentifier(unsigned number) {
    static const std::array<std::optional<std::string>, 6> all = {"default", "a",          "b",
                                                                  "default", std::nullopt, "a"};
    return at(all, number);
}

inline std::optional<std::string> attributeKey(unsigned number) {
    static const std::array<std::optional<std::string>, 9> all = {
        "labelColor", "mine", "accentColor", "indigoColor", "styleType",
        "grayColor3", "",     "mine",        std::nullopt};
    return at(all, number);
}

template <class Kit>
typename Kit::Color someColor(unsigned number) {
    switch (number % 6) {
    case 0:
        return Kit::gray(0.25, 1);
    case 1:
        return Kit::srgb(0.125, 0.9375, 0.5, 0.75);
    case 2:
        return Kit::device(0.5, 0.25, 1, 1);
    case 3:
        return Kit::cmyk(0.5, 0.25);
    case 4:
        return Kit::gray(0.001, 0.5);
    default:
        return Kit::srgb(1.25, -0.5, 1, 1);
    }
}

template <class Kit>
std::optional<typename Kit::Value> someValue(unsigned number) {
    switch (number % 12) {
    case 0:
        return std::nullopt;
    case 1:
        return Kit::null();
    case 2:
        return Kit::number(1);
    case 3:
        return Kit::number(2);
    case 4:
        return Kit::textValue("text");
    case 5:
        return std::nullopt;
    default:
        return typename Kit::Value(someColor<Kit>(number % 12 - 6));
    }
}

} // namespace zeltest
