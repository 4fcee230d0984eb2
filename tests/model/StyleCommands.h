// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

template <class Kit>
auto changesOf(Player<Kit>& p, const Arguments& a) {
    return [&p, a](const auto& style) {
        p.note(mark("CHANGES"), style);
        style->setValue(someValue<Kit>(a[3]), attributeKey(a[3] / 4));
        p.perform(a[1]);
        return a[2] % 4 != 0;
    };
}

template <class Kit>
auto inheritedChangesOf(Player<Kit>& p, const Arguments& a) {
    return [&p, a](const auto& parent, const auto& child) {
        p.note(mark("INHERITED"), parent, child);
        child->setValue(parent ? parent->effectiveValueForAttribute("labelColor") : std::nullopt,
                        "mine");
        p.perform(a[3]);
    };
}

template <class Kit>
auto observerOf(Player<Kit>& p, const Arguments& a) {
    return [&p, program = a[2], number = ++p.made](const auto& owner, const auto& style,
                                                   bool initial) {
        p.note(mark("OBSERVER"), owner, number, style, initial);
        p.perform(program);
    };
}

/// An object, or a style in that part.
template <class Kit>
std::shared_ptr<typename Kit::Object> ownerOf(Player<Kit>& p, unsigned number) {
    if (number % 9 < p.things.size()) {
        return p.things[number % 9].object;
    }
    return at(p.styles, number);
}

/// Makes a style, a root without a parent.
template <class Kit>
void makeStyle(Player<Kit>& p, const std::shared_ptr<typename Kit::Style>& parent,
               const Arguments& a) {
    auto style = Kit::template make<typename Kit::Style>()->initWithIdentifier(
        styleIdentifier(a[1]), at(p.schemes, a[2]), parent);
    p.put(style);
    slot(p.styles, a[0]) = std::move(style);
}

/// What a provider's callback and hooks do: tell, write something, and go on to a program.
template <class Kit>
auto hookOf(Player<Kit>& p, std::int64_t number, std::int64_t kind, const Arguments& a) {
    return [&p, number, kind, a](const auto& style, const auto& scheme, const auto&... providers) {
        p.note(kind, number, style, scheme, providers->identifier()...);
        style->setValue(someValue<Kit>(a[3]), attributeKey(a[3] % 8));
        p.perform(a[2]);
    };
}

template <class Kit>
void newProvider(Player<Kit>& p, const Arguments& a) {
    using List = std::vector<std::string>;
    using Some = std::optional<List>;
    const auto identifier = *oneOf({"one", "two", "base", "main", "one"}, a[3]);
    static const std::array<Some, 6> requirements = {
        Some(), List(), List{"base"}, List{"one"}, List{"two", "main"}, List{"absent"}};
    const auto number = ++p.made;
    auto made = Kit::Provider::providerWithIdentifier(identifier, at(requirements, a[1]),
                                                      hookOf(p, number, mark("PROVIDER"), a));
    if (a[2] % 3 == 1) {
        made->setWillApplyBlock(hookOf(p, number, mark("HOOK"), a));
    } else if (a[2] % 3 == 2) {
        made->setDidApplyBlock(hookOf(p, -number, mark("HOOK"), a));
    }
    slot(p.providers, a[0]) = std::move(made);
}

/// One of the script's own, or of the two that are there from the beginning.
template <class Kit>
std::shared_ptr<typename Kit::Provider> providerOf(Player<Kit>& p, unsigned number) {
    return number % 12 >= 10 ? Kit::providers()[number % 2] : at(p.providers, number);
}

template <class Kit>
std::vector<Command<Kit>> styleCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    return {
        {"newRoot", 10, [](P& p, const A& a) { makeStyle(p, nullptr, a); }},
        {"newChild", 20, [](P& p, const A& a) { makeStyle(p, at(p.styles, a[3]), a); }},
        drop(&P::styles, "dropStyle", 8),
        on(&P::styles, "setParentStyle", 8,
           [](P& p, auto& style, const A& a) {
               const auto parent = at(p.styles, a[1]);
               if (style != parent && !(parent && parent->isChildOf(style))) {
                   style->setParentStyle(parent);
               }
           }),
        on(&P::styles, "setStyleIdentifier", 6,
           [](P&, auto& style, const A& a) { style->setIdentifier(styleIdentifier(a[1])); }),
        on(&P::styles, "setStyleDomain", 3,
           [](P& p, auto& style, const A& a) { style->setDomain(at(p.domains, a[1])); }),
        on(&P::styles, "setStyleScheme", 3,
           [](P& p, auto& style, const A& a) { style->setScheme(at(p.schemes, a[1])); }),
        // A nil style raises.
        on(&P::schemes, "addStyle", 40,
           [](P& p, auto& scheme, const A& a) { scheme->addStyle(at(p.styles, a[1])); }),
        on(&P::schemes, "removeStyle", 8,
           [](P& p, auto& scheme, const A& a) { scheme->removeStyle(at(p.styles, a[1])); }),
        on(&P::schemes, "takeStyle", 8,
           [](P& p, auto& scheme, const A& a) {
               slot(p.styles, a[1]) = scheme->styleForIdentifier(styleIdentifier(a[2]));
           }),
        on(&P::schemes, "copyTable", 2,
           [](P& p, auto& scheme, const A& a) {
               if (const auto other = at(p.schemes, a[1])) {
                   scheme->setStylesByIdentifier(other->stylesByIdentifier());
               }
           }),
        on(&P::styles, "setValue", 30,
           [](P&, auto& style, const A& a) {
               style->setValue(someValue<Kit>(a[1]), attributeKey(a[2]));
           }),
        on(&P::styles, "readValue", 20,
           [](P& p, auto& style, const A& a) {
               // Also under a key that nobody in the process ever writes to.
               p.put(style->effectiveValueForAttribute(a[1] % 10 == 9 ? "unwritten"
                                                                      : attributeKey(a[1])));
               if (a[2] % 2 == 0) {
                   return;
               }
               p.note(style->labelColor(), style->isDarkStyle(), style->isLightStyle(),
                      style->isCustomStyle());
           }),
        on(&P::styles, "isChildOf", 8,
           [](P& p, auto& style, const A& a) { p.put(style->isChildOf(at(p.styles, a[1]))); }),
        on(&P::styles, "update", 30,
           [](P& p, auto& style, const A& a) { style->updateStyleWithChanges(changesOf(p, a)); }),
        on(&P::styles, "updateWithoutChanges", 15,
           [](P&, auto& style, const A&) { style->updateStyleWithChanges(nullptr); }),
        on(&P::styles, "inherit", 20,
           [](P& p, auto& style, const A& a) {
               using Changes = typename Kit::Style::InheritedChanges;
               const bool none = a[3] > 20;
               auto child = style->inheritedStyleWithChanges(
                   none ? Changes() : Changes(inheritedChangesOf(p, a)), styleIdentifier(a[1]),
                   at(p.schemes, a[2]));
               p.put(child);
               slot(p.styles, a[1] + a[2]) = std::move(child);
           }),
        on(&P::styles, "observe", 15,
           [](P& p, auto& style, const A& a) {
               using Observer = typename Kit::Style::UpdateObserver;
               style->addStyleUpdateObserver(a[2] == 23 ? Observer() : Observer(observerOf(p, a)),
                                             ownerOf(p, a[1]), a[3] % 2 == 0);
           }),
        on(&P::styles, "stopObserving", 8,
           [](P& p, auto& style, const A& a) {
               style->removeStyleUpdateObserverWithOwner(ownerOf(p, a[1]));
           }),
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
}

} // namespace zeltest
