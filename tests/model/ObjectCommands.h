// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

template <class Kit, class Made>
typename Player<Kit>::Thing makeThingOf() {
    const auto made = Kit::template make<Made>();
    return {made, made.get(), std::dynamic_pointer_cast<typename Kit::View>(made),
            std::dynamic_pointer_cast<typename Kit::Controller>(made)};
}

template <class Kit>
typename Player<Kit>::Thing makeThing(unsigned kind) {
    switch (kind % 6) {
    case 0:
        return makeThingOf<Kit, Listening<Kit, typename Kit::Object>>();
    case 1:
        return makeThingOf<Kit, Listening<Kit, typename Kit::Controller>>();
    case 2:
    case 3:
        return makeThingOf<Kit, Listening<Kit, typename Kit::View>>();
    default:
        return makeThingOf<Kit, Answering<Kit>>();
    }
}

/// Puts an object below another, or nowhere. One that the player answers for never gets below
/// itself; views and controllers see to that themselves.
template <class Kit>
void moveBelow(Player<Kit>& p, unsigned moved, unsigned below) {
    const auto child = at(p.things, moved);
    const auto parent = at(p.things, below);
    if (child.view) {
        parent.view ? parent.view->addSubview(child.view) : child.view->removeFromSuperview();
    } else if (child.controller && parent.controller) {
        parent.controller->addChildViewController(child.controller);
    } else if (child.controller) {
        child.controller->removeFromParentViewController();
        child.controller->setView(parent.view);
    } else if (child.controls) {
        auto each = parent.object;
        while (each && each != child.object) {
            each = parentOf(*each);
        }
        if (!each) {
            child.controls->parent = parent.object;
        }
    }
}

/// Gives an object its number and what it does when it is told of a style.
template <class Kit>
void equip(Player<Kit>& p, typename Player<Kit>::Thing& thing, const Arguments& a) {
    const auto number = ++p.made;
    thing.controls->number = number;
    thing.controls->domainIdentifier = domainIdentifier(a[3]);
    thing.controls->onStyle = [&p, number, program = a[2]](const auto& style, std::uint64_t event) {
        p.keepStyles();
        p.note(mark("OBJECT"), number, style, event);
        p.perform(program);
    };
}

/// One more listener of a crowd: of any kind, some below an object; a few run a program.
template <class Kit>
void joinCrowd(Player<Kit>& p, typename Kit::Domain& domain, unsigned i, const Arguments& a) {
    const auto above = at(p.things, a[3]);
    auto thing = makeThing<Kit>(i + a[2]);
    equip(p, thing, {0, 0, i % 8 == 0 ? a[2] : noProgram, a[0]});
    p.crowd.push_back(thing);
    if (thing.view && above.view) {
        above.view->addSubview(thing.view);
    } else if (!thing.view && !thing.controller) {
        thing.controls->parent = above.object;
    }
    if (i % 5 == 0) {
        thing.object->setCustomZelStyleIdentifier(styleIdentifier(i / 5));
    }
    if (i % 3 == 0) {
        domain.registerChangeHandler(thing.object);
    } else {
        domain.registerChangeHandler(
            [&p, number = ++p.made](const auto& owner, const auto& style, auto event) {
                p.keepStyles();
                p.note(mark("HANDLER"), owner, number, style, static_cast<std::uint64_t>(event));
            },
            thing.object);
    }
}

/// Many listeners of a domain at once.
template <class Kit>
void gatherCrowd(Player<Kit>& p, const Arguments& a) {
    const auto domain = at(p.domains, a[0]);
    constexpr std::size_t most = 70;
    for (unsigned i = 0; domain && i < 2 * a[1] && p.crowd.size() < most; ++i) {
        joinCrowd(p, *domain, i, a);
    }
}

/// Lets go of every second one, or third, and so on; of all.
template <class Kit>
void thinCrowd(Player<Kit>& p, const Arguments& a) {
    std::vector<typename Player<Kit>::Thing> staying;
    const auto before = std::exchange(p.crowd, {});
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (i % (a[0] % 4 + 1) != 0) {
            staying.push_back(before[i]);
        }
    }
    p.crowd = std::move(staying);
}

template <class Kit>
std::vector<Command<Kit>> objectCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    return {
        {"newObject", 40,
         [](P& p, const A& a) {
             auto thing = makeThing<Kit>(a[1]);
             equip(p, thing, a);
             slot(p.things, a[0]) = std::move(thing);
         }},
        drop(&P::things, "dropObject", 10),
        {"gatherCrowd", 2, [](P& p, const A& a) { gatherCrowd(p, a); }},
        {"thinCrowd", 2, [](P& p, const A& a) { thinCrowd(p, a); }},
        {"moveBelow", 30, [](P& p, const A& a) { moveBelow(p, a[0], a[1]); }},
        on(&P::things, "associate", 10,
           [](P& p, auto& thing, const A& a) {
               using Few = std::vector<std::weak_ptr<typename Kit::Object>>;
               thing.controls->associated =
                   a[3] % 4 == 0 ? std::optional<Few>()
                                 : Few{at(p.things, a[1]).object, at(p.things, a[2]).object};
           }),
        on(&P::things, "setDomainIdentifier", 8,
           [](P&, auto& thing, const A& a) {
               thing.controls->domainIdentifier = domainIdentifier(a[1]);
           }),
        on(&P::things, "setCustomStyle", 30,
           [](P&, auto& thing, const A& a) {
               thing.object->setCustomZelStyleIdentifier(styleIdentifier(a[1]));
           }),
        on(&P::things, "setCustomScheme", 30,
           [](P&, auto& thing, const A& a) {
               thing.object->setCustomZelStyleSchemeIdentifier(schemeIdentifier(a[1]));
           }),
        on(&P::things, "setLastStyle", 4,
           [](P& p, auto& thing, const A& a) { Kit::setLast(*thing.object, at(p.styles, a[1])); }),
        {"raise", 8, [](P&, const A& a) { throw Raised(a[0]); }},
        {"look", 12, [](P& p, const A&) { p.putReads(); }},
        {"effect", 6,
         [](P& p, const A& a) {
             const auto color = someColor<Kit>(a[0]);
             p.note(color.colorWithZelStyleEffect(a[1] % 7, a[2] % 2 == 0),
                    color.modifiableColor());
         }},
    };
}

} // namespace zeltest
