// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

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
        p.note(mark("HANDLER"), object, number, style, static_cast<std::uint64_t>(event));
        p.perform(program);
    };
}

template <class Kit>
std::vector<Command<Kit>> domainCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    using Handler =
        std::function<void(const std::shared_ptr<typename Kit::Object>&,
                           const std::shared_ptr<typename Kit::Style>&, typename Kit::Event)>;
    return {
        {"takeDomain", 20,
         [](P& p, const A& a) {
             slot(p.domains, a[0]) = Kit::Domain::domainForIdentifier(domainIdentifier(a[1]));
         }},
        drop(&P::domains, "dropDomain", 4),
        {"reset", 3, [](P& p, const A&) { p.put(Kit::Domain::domainForIdentifier("_reset")); }},
        {"takeScheme", 40,
         [](P& p, const A& a) {
             if (const auto domain = at(p.domains, a[1])) {
                 slot(p.schemes, a[0]) = domain->schemeForIdentifier(schemeIdentifier(a[2]));
             }
         }},
        {"strayScheme", 3,
         [](P& p, const A& a) {
             slot(p.schemes, a[0]) = Kit::template make<typename Kit::Scheme>()->initWithIdentifier(
                 schemeIdentifier(a[2]), at(p.domains, a[1]));
         }},
        drop(&P::schemes, "dropScheme", 5),
        on(&P::domains, "setCurrentScheme", 40,
           [](P& p, auto& domain, const A& a) { domain->setCurrentScheme(at(p.schemes, a[1])); }),
        on(&P::domains, "follow", 20,
           [](P&, auto& domain, const A& a) { domain->setSchemeFollowsSystem(a[1] % 3 != 0); }),
        on(&P::domains, "mainStyle", 15,
           [](P& p, auto& domain, const A&) { p.put(domain->mainStyle()); }),
        on(&P::domains, "styleForIdentifier", 10,
           [](P& p, auto& domain, const A& a) {
               p.put(domain->styleForIdentifier(styleIdentifier(a[1])));
           }),
        on(&P::domains, "styleFor", 15,
           [](P& p, auto& domain, const A& a) {
               const auto object = at(p.things, a[1]).object;
               if (!object || object->asZelStyleable()) {
                   p.put(domain->styleFor(object));
                   p.put(Kit::Style::forStyleable(object));
               }
           }),
        {"isEqualOrChildOf", 8,
         [](P& p, const A& a) {
             p.put(Kit::Domain::isEqualOrChildOf(at(p.things, a[0]).object,
                                                 at(p.things, a[1]).object));
         }},
        {"domainForStyleable", 8,
         [](P& p, const A& a) {
             p.put(Kit::Domain::domainForStyleable(at(p.things, a[0]).object));
         }},
        on(&P::domains, "register", 50,
           [](P& p, auto& domain, const A& a) {
               domain->registerChangeHandler(a[2] == 23 ? Handler() : Handler(handlerOf(p, a)),
                                             at(p.things, a[1]).object);
           }),
        on(&P::domains, "unregister", 15,
           [](P& p, auto& domain, const A& a) {
               domain->unregisterChangeHandlersWithOwner(at(p.things, a[1]).object);
           }),
        on(&P::domains, "registerObject", 25,
           [](P& p, auto& domain, const A& a) {
               domain->registerChangeHandler(at(p.things, a[1]).object);
           }),
        on(&P::domains, "unregisterObject", 10,
           [](P& p, auto& domain, const A& a) {
               domain->unregisterChangeHandler(at(p.things, a[1]).object);
           }),
        {"registerOwn", 15,
         [](P& p, const A& a) {
             if (const auto object = at(p.things, a[1]).object) {
                 p.put(object->registerStyleableChangeHandler(handlerOf(p, a)));
             }
         }},
        on(&P::things, "unregisterOwn", 6,
           [](P& p, auto& thing, const A&) {
               p.put(thing.object->unregisterStyleableChangeHandlers());
           }),
        on(&P::domains, "notify", 40,
           [](P& p, auto& domain, const A& a) {
               const auto only = a[3] % 8 < 6 ? p.styles[a[3] % 8] : nullptr;
               const auto event = static_cast<typename Kit::Event>(a[2] % 5);
               domain->notifyForStyleChangeOf(at(p.things, a[1]).object,
                                              {event, a[2] % 2 == 1, only});
           }),
    };
}

} // namespace zeltest
