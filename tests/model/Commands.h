// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Player.h"

#include <initializer_list>
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
    std::function<void(Player<Kit>&, const Arguments&)> run;
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

/// A command for what the slot of the first argument holds; nothing happens where it is empty.
template <class Kit, class Slots, class Run>
Command<Kit> on(Slots Player<Kit>::*slots, std::string_view name, unsigned weight, Run run) {
    return {name, weight, [slots, run](Player<Kit>& p, const Arguments& a) {
                if (const auto held = at(p.*slots, a[0])) {
                    run(p, held, a);
                }
            }};
}

/// A command that empties the slot of the first argument; what it held may end, and call back, when
/// the slot is empty already.
template <class Kit, class Slots>
Command<Kit> drop(Slots Player<Kit>::*slots, std::string_view name, unsigned weight) {
    return {name, weight, [slots](Player<Kit>& p, const Arguments& a) {
                const auto dropped = std::exchange(slot(p.*slots, a[0]), {});
            }};
}

/// A null pointer stands for nil.
inline std::optional<std::string> oneOf(std::initializer_list<const char*> texts, unsigned number) {
    const char* const text = texts.begin()[number % texts.size()];
    return text ? std::optional<std::string>(text) : std::nullopt;
}

inline auto styleIdentifier(unsigned number) {
    return oneOf({"main", "accent", "main", "card", "", nullptr}, number);
}

inline auto schemeIdentifier(unsigned number) {
    return oneOf({"light", "dark", "default", "dark", "light", "other", nullptr, "default"},
                 number);
}

inline auto domainIdentifier(unsigned number) {
    return oneOf({"default", "a", "b", "default", nullptr, "a"}, number);
}

inline auto attributeKey(unsigned number) {
    return oneOf({"labelColor", "mine", "accentColor", "indigoColor", "styleType", "grayColor3", "",
                  "mine", nullptr},
                 number);
}

template <class Kit>
typename Kit::Color someColor(unsigned number) {
    using Color = typename Kit::Color;
    static const std::array<Color, 6> all = {Color::colorWithWhite(0.25, 1),
                                             Color::colorWithSRGBRed(0.125, 0.9375, 0.5, 0.75),
                                             Color::colorWithDeviceRed(0.5, 0.25, 1, 1),
                                             Color::colorWithDeviceCyan(0.5, 0.25, 0.5, 0.75, 0.25),
                                             Color::colorWithWhite(0.001, 0.5),
                                             Color::colorWithSRGBRed(1.25, -0.5, 1, 1)};
    return at(all, number);
}

template <class Kit>
std::optional<typename Kit::Value> someValue(unsigned number) {
    using Some = std::optional<typename Kit::Value>;
    static const std::array<Some, 6> all = {
        Some(), Kit::null(), Kit::number(1), Kit::number(2), Some(std::string("text")), Some()};
    return number % 12 < 6 ? at(all, number) : Some(someColor<Kit>(number));
}

/// The object that another one answers is above it; none where it can't be asked.
template <class Object>
auto parentOf(const Object& object) {
    const auto* styleable = object.asZelStyleable();
    return styleable ? styleable->parentZelStyleable() : nullptr;
}

} // namespace zeltest
