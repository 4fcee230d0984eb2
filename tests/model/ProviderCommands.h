// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

/// What a provider's callback and hooks do: tell, write something, and go on to a program.
template <class Kit>
auto hookOf(Player<Kit>& p, std::int64_t number, Mark mark, const Arguments& a) {
    return [&p, number, mark, a](const auto& style, const auto& scheme, const auto&... providers) {
        p.trace.put(mark);
        p.trace.put(number);
        p.put(style);
        p.trace.object(scheme);
        (p.trace.put(providers->identifier()), ...);
        style->setValue(someValue<Kit>(a[3]), attributeKey(a[3] % 8));
        p.perform(a[2]);
    };
}

template <class Kit>
void newProvider(Player<Kit>& p, const Arguments& a) {
    using Some = std::optional<std::vector<std::string>>;
    static const std::array<std::string, 5> identifiers = {"one", "two", "base", "main", "one"};
    using List = std::vector<std::string>;
    static const std::array<Some, 6> requirements = {
        Some(), List(), List{"base"}, List{"one"}, List{"two", "main"}, List{"absent"}};
    const auto number = ++p.made;
    auto made = Kit::Provider::providerWithIdentifier(at(identifiers, a[3]), at(requirements, a[1]),
                                                      hookOf(p, number, Mark::ProviderCalled, a));
    if (a[2] % 3 == 1) {
        made->setWillApplyBlock(hookOf(p, number, Mark::HookCalled, a));
    } else if (a[2] % 3 == 2) {
        made->setDidApplyBlock(hookOf(p, -number, Mark::HookCalled, a));
    }
    slot(p.providers, a[0]) = std::move(made);
}

/// One of the script's own, or of the two that are there from the beginning.
template <class Kit>
std::shared_ptr<typename Kit::Provider> providerOf(Player<Kit>& p, unsigned number) {
    return number % 12 >= 10 ? Kit::providers()[number % 2] : at(p.providers, number);
}

template <class Kit>
const std::vector<Command<Kit>>& providerCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::vector<Command<Kit>> all = {
        {"newProvider", 6, [](P& p, const A& a) { newProvider(p, a); }},
        {"addProvider", 6,
         [](P& p, const A& a) {
             if (p.added.size() < 8) {
                 const auto provider = providerOf(p, a[0]);
                 Kit::Style::addDefaultValueProvider(provider);
                 p.added.push_back(provider);
             }
         }},
        {"removeProvider", 6,
         [](P& p, const A& a) { Kit::Style::removeDefaultValueProvider(providerOf(p, a[0])); }},
    };
    return all;
}

} // namespace zeltest
