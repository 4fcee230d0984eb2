// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

template <class Kit>
auto changesOf(Player<Kit>& p, const Arguments& a) {
    return [&p, a](const auto& style) {
        p.trace.put(Mark::ChangesCalled);
        p.put(style);
        style->setValue(someValue<Kit>(a[3]), attributeKey(a[3] / 4));
        p.perform(a[1]);
        return a[2] % 4 != 0;
    };
}

template <class Kit>
auto inheritedChangesOf(Player<Kit>& p, const Arguments& a) {
    return [&p, a](const auto& parent, const auto& child) {
        p.trace.put(Mark::InheritedCalled);
        p.put(parent);
        p.put(child);
        child->setValue(parent ? parent->effectiveValueForAttribute("labelColor") : std::nullopt,
                        "mine");
        p.perform(a[3]);
    };
}

template <class Kit>
auto observerOf(Player<Kit>& p, const Arguments& a) {
    return [&p, program = a[2], number = ++p.made](const auto& owner, const auto& style,
                                                   bool initial) {
        p.put(Mark::ObserverCalled, owner);
        p.trace.put(number);
        p.put(style);
        p.trace.put(initial);
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

template <class Kit>
const std::vector<Command<Kit>>& lifeCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::vector<Command<Kit>> all = {
        {"newRoot", 10,
         [](P& p, const A& a) {
             auto style = Kit::template make<typename Kit::Style>()->initWithIdentifier(
                 styleIdentifier(a[1]), at(p.schemes, a[2]), nullptr);
             p.put(style);
             slot(p.styles, a[0]) = std::move(style);
         }},
        {"newChild", 20,
         [](P& p, const A& a) {
             auto style = Kit::template make<typename Kit::Style>()->initWithIdentifier(
                 styleIdentifier(a[1]), at(p.schemes, a[2]), at(p.styles, a[3]));
             p.put(style);
             slot(p.styles, a[0]) = std::move(style);
         }},
        {"dropStyle", 8,
         [](P& p, const A& a) {
             const auto dropped = std::exchange(slot(p.styles, a[0]), nullptr);
         }},
        {"setParentStyle", 8,
         [](P& p, const A& a) {
             const auto style = at(p.styles, a[0]);
             const auto parent = at(p.styles, a[1]);
             if (style && style != parent && !(parent && parent->isChildOf(style))) {
                 style->setParentStyle(parent);
             }
         }},
        {"setStyleIdentifier", 6,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->setIdentifier(styleIdentifier(a[1]));
             }
         }},
        {"setStyleDomain", 3,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->setDomain(at(p.domains, a[1]));
             }
         }},
        {"setStyleScheme", 3,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->setScheme(at(p.schemes, a[1]));
             }
         }},
        {"addStyle", 40,
         [](P& p, const A& a) {
             const auto scheme = at(p.schemes, a[0]);
             const auto style = at(p.styles, a[1]);
             if (scheme) { // nil raises
                 scheme->addStyle(style);
             }
         }},
        {"removeStyle", 8,
         [](P& p, const A& a) {
             const auto scheme = at(p.schemes, a[0]);
             const auto style = at(p.styles, a[1]);
             if (scheme) {
                 scheme->removeStyle(style);
             }
         }},
        {"takeStyle", 8,
         [](P& p, const A& a) {
             if (const auto scheme = at(p.schemes, a[1])) {
                 slot(p.styles, a[0]) = scheme->styleForIdentifier(styleIdentifier(a[2]));
             }
         }},
        {"copyTable", 2,
         [](P& p, const A& a) {
             const auto scheme = at(p.schemes, a[0]);
             const auto other = at(p.schemes, a[1]);
             if (scheme && other) {
                 scheme->setStylesByIdentifier(other->stylesByIdentifier());
             }
         }},
    };
    return all;
}

template <class Kit>
const std::vector<Command<Kit>>& styleCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::vector<Command<Kit>> all = {
        {"setValue", 30,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->setValue(someValue<Kit>(a[1]), attributeKey(a[2]));
             }
         }},
        {"readValue", 20,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 // Also under a key that nobody in the process ever writes to.
                 p.put(style->effectiveValueForAttribute(a[1] % 10 == 9 ? "unwritten"
                                                                        : attributeKey(a[1])));
                 if (a[2] % 2 == 0) {
                     return;
                 }
                 const auto color = Kit::labelColor(*style);
                 p.put(color ? std::optional<typename Kit::Value>(*color) : std::nullopt);
                 p.trace.put(std::int64_t{Kit::type(*style)});
             }
         }},
        {"isChildOf", 8,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 p.trace.put(style->isChildOf(at(p.styles, a[1])));
             }
         }},
        {"update", 30,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->updateStyleWithChanges(changesOf(p, a));
             }
         }},
        {"updateWithoutChanges", 15,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->updateStyleWithChanges(nullptr);
             }
         }},
        {"inherit", 20,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 using Changes = typename Kit::Style::InheritedChanges;
                 const bool none = a[3] > 20;
                 auto child = style->inheritedStyleWithChanges(
                     none ? Changes() : Changes(inheritedChangesOf(p, a)), styleIdentifier(a[1]),
                     at(p.schemes, a[2]));
                 p.put(child);
                 slot(p.styles, a[1] + a[2]) = std::move(child);
             }
         }},
        {"observe", 15,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 using Observer = typename Kit::Style::UpdateObserver;
                 style->addStyleUpdateObserver(a[2] == 23 ? Observer() : Observer(observerOf(p, a)),
                                               ownerOf(p, a[1]), a[3] % 2 == 0);
             }
         }},
        {"stopObserving", 8,
         [](P& p, const A& a) {
             if (const auto style = at(p.styles, a[0])) {
                 style->removeStyleUpdateObserverWithOwner(ownerOf(p, a[1]));
             }
         }},
    };
    return all;
}

} // namespace zeltest
