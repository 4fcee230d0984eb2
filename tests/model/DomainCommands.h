// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

template <class Kit>
const std::vector<Command<Kit>>& domainCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::vector<Command<Kit>> all = {
        {"takeDomain", 20,
         [](P& p, const A& a) {
             slot(p.domains, a[0]) = Kit::Domain::domainForIdentifier(domainIdentifier(a[1]));
         }},
        {"dropDomain", 4,
         [](P& p, const A& a) {
             const auto dropped = std::exchange(slot(p.domains, a[0]), nullptr);
         }},
        {"reset", 3,
         [](P& p, const A&) { p.trace.object(Kit::Domain::domainForIdentifier("_reset")); }},
        {"takeScheme", 40,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[1])) {
                 slot(p.schemes, a[0]) = domain->schemeForIdentifier(schemeIdentifier(a[2]));
             }
         }},
        {"strayScheme", 3,
         [](P& p, const A& a) {
             at(p.schemes, a[0]) = Kit::template make<typename Kit::Scheme>()->initWithIdentifier(
                 schemeIdentifier(a[2]), at(p.domains, a[1]));
         }},
        {"dropScheme", 5,
         [](P& p, const A& a) {
             const auto dropped = std::exchange(slot(p.schemes, a[0]), nullptr);
         }},
        {"setCurrentScheme", 40,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->setCurrentScheme(at(p.schemes, a[1]));
             }
         }},
        {"follow", 20,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->setSchemeFollowsSystem(a[1] % 3 != 0);
             }
         }},
        {"mainStyle", 15,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 p.put(domain->mainStyle());
             }
         }},
        {"styleForIdentifier", 10,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 p.put(domain->styleForIdentifier(styleIdentifier(a[1])));
             }
         }},
        {"styleFor", 15,
         [](P& p, const A& a) {
             const auto domain = at(p.domains, a[0]);
             const auto object = at(p.things, a[1]).object;
             if (domain && (!object || Kit::isStyleable(*object))) {
                 p.put(domain->styleFor(object));
                 p.put(Kit::Style::forStyleable(object));
             }
         }},
        {"isEqualOrChildOf", 8,
         [](P& p, const A& a) {
             p.trace.put(Kit::Domain::isEqualOrChildOf(at(p.things, a[0]).object,
                                                       at(p.things, a[1]).object));
         }},
        {"domainForStyleable", 8,
         [](P& p, const A& a) {
             p.trace.object(Kit::Domain::domainForStyleable(at(p.things, a[0]).object));
         }},
    };
    return all;
}

/// A handler that is known by its number. Some own another object, one made later that owns nothing
/// but such handlers: no two own each other.
template <class Kit>
auto handlerOf(Player<Kit>& p, const Arguments& a) {
    const auto& owner = at(p.things, a[1]);
    const auto& other = at(p.things, a[3]);
    const bool owns = owner.controls && other.controls && !other.view && !other.controller &&
                      other.controls->number > owner.controls->number;
    return [&p, owned = owns ? other.object : nullptr, program = a[2],
            number = ++p.made](const auto& object, const auto& style, auto event) {
        p.keepStyles();
        p.put(Mark::HandlerCalled, object);
        p.trace.put(number);
        p.put(style);
        p.trace.put(static_cast<std::uint64_t>(event));
        p.perform(program);
    };
}

template <class Kit>
const std::vector<Command<Kit>>& deliveryCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    using Handler =
        std::function<void(const std::shared_ptr<typename Kit::Object>&,
                           const std::shared_ptr<typename Kit::Style>&, typename Kit::Event)>;
    static const std::vector<Command<Kit>> all = {
        {"register", 50,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->registerChangeHandler(a[2] == 23 ? Handler() : Handler(handlerOf(p, a)),
                                               at(p.things, a[1]).object);
             }
         }},
        {"unregister", 15,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->unregisterChangeHandlersWithOwner(at(p.things, a[1]).object);
             }
         }},
        {"registerObject", 25,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->registerChangeHandler(at(p.things, a[1]).object);
             }
         }},
        {"unregisterObject", 10,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 domain->unregisterChangeHandler(at(p.things, a[1]).object);
             }
         }},
        {"registerOwn", 15,
         [](P& p, const A& a) {
             if (const auto object = at(p.things, a[1]).object) {
                 p.trace.put(object->registerStyleableChangeHandler(handlerOf(p, a)));
             }
         }},
        {"unregisterOwn", 6,
         [](P& p, const A& a) {
             if (const auto object = at(p.things, a[1]).object) {
                 p.trace.put(object->unregisterStyleableChangeHandlers());
             }
         }},
        {"notify", 40,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[0])) {
                 const auto only = a[3] % 8 < 6 ? p.styles[a[3] % 8] : nullptr;
                 const auto event = static_cast<typename Kit::Event>(a[2] % 5);
                 domain->notifyForStyleChangeOf(at(p.things, a[1]).object,
                                                {event, a[2] % 2 == 1, only});
             }
         }},
    };
    return all;
}

} // namespace zeltest
