// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

namespace zeltest {

/// Drains the main queue, unless that is going on already.
template <class Kit>
void drainOnce(Player<Kit>& p) {
    if (p.draining) {
        return;
    }
    struct Guard {
        bool& flag;
        explicit Guard(bool& draining) : flag(draining) { flag = true; }
        ~Guard() { flag = false; }
    } const guard(p.draining);
    Kit::drain();
}

inline auto modeIdentifier(unsigned number) {
    return oneOf({"always-light", "always-dark", "follow-system", "own", "follow-system", nullptr},
                 number);
}

inline auto modeName(unsigned number) {
    return oneOf({"a", "B", "b", "Light", "c", nullptr}, number);
}

/// The shared manager, or one of the script's own.
template <class Kit>
auto managerOf(Player<Kit>& p, unsigned number) {
    return number % 3 == 2 ? Kit::Manager::sharedStyleManager() : p.managers[number % 3];
}

template <class Kit>
std::vector<Command<Kit>> appearanceCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    return {
        {"appear", 20,
         [](P&, const A& a) {
             Kit::appear(*oneOf({"NSAppearanceNameAqua", "NSAppearanceNameDarkAqua",
                                 "NSAppearanceNameVibrantDark",
                                 "NSAppearanceNameAccessibilityHighContrastDarkAqua",
                                 "NSAppearanceNameVibrantLight", "a name of its own"},
                                a[0]));
         }},
        {"setAppearanceType", 4,
         [](P&, const A& a) { Kit::tracker().setCurrentAppearanceType(a[0] % 3); }},
        {"determine", 4, [](P&, const A&) { Kit::tracker().determineFromSystemAppearance(); }},
        {"darkAppearanceExists", 2,
         [](P&, const A& a) { Kit::setDarkAppearanceExists(a[0] % 3 != 0); }},
        {"drain", 25, [](P& p, const A&) { drainOnce(p); }},
        on(&P::things, "observeType", 5,
           [](P& p, auto& thing, const A& a) {
               if (!std::exchange(thing.controls->observesType, true)) {
                   thing.controls->onType = [&p, number = ++p.made, program = a[1]](bool isPrior) {
                       p.note(mark("TYPE"), number, isPrior,
                              Kit::tracker().currentAppearanceType());
                       p.perform(program);
                   };
                   Kit::observeType(thing.object);
               }
           }),
        on(&P::things, "stopObservingType", 2,
           [](P&, auto& thing, const A&) {
               if (std::exchange(thing.controls->observesType, false)) {
                   Kit::unobserveType(thing.object);
               }
           }),
        on(&P::things, "observePosts", 4,
           [](P& p, auto& thing, const A& a) {
               if (!std::exchange(thing.controls->observesPosts, true)) {
                   Kit::observePosts(thing.object, [&p, number = ++p.made, program = a[1]] {
                       p.note(mark("POSTED"), number);
                       p.perform(program);
                   });
               }
           }),
        on(&P::things, "stopObservingPosts", 2,
           [](P&, auto& thing, const A&) {
               if (std::exchange(thing.controls->observesPosts, false)) {
                   Kit::unobservePosts(thing.object);
               }
           }),
        {"systemColors", 2, [](P&, const A& a) { Kit::setSystemColors(a[0] % 2 == 0); }},
        {"newManager", 4,
         [](P& p, const A& a) {
             auto manager = Kit::template make<typename Kit::Manager>();
             manager->init();
             slot(p.managers, a[0]) = std::move(manager);
         }},
        {"newMode", 8,
         [](P& p, const A& a) {
             slot(p.modes, a[0]) = Kit::template make<typename Kit::Mode>()->initWithIdentifier(
                 modeIdentifier(a[1]), a[2] % 3 * 10, modeName(a[3]));
         }},
        on(&P::modes, "setMode", 3,
           [](P&, auto& mode, const A& a) {
               mode->setIdentifier(modeIdentifier(a[1]));
               mode->setRank(a[2] % 3 * 5);
               mode->setName(modeName(a[3]));
           }),
        {"addMode", 10,
         [](P& p, const A& a) {
             const auto manager = managerOf(p, a[0]);
             if (manager && manager->modes().size() < 12) {
                 manager->addMode(at(p.modes, a[1]));
             }
         }},
        {"removeMode", 6,
         [](P& p, const A& a) {
             if (const auto manager = managerOf(p, a[0])) {
                 manager->removeMode(at(p.modes, a[1]));
             }
         }},
        on(&P::modes, "activateMode", 4,
           [](P&, auto& mode, const A& a) { mode->setActive(a[1] % 4 != 0); }),
        {"choose", 10,
         [](P& p, const A& a) {
             if (const auto manager = managerOf(p, a[0])) {
                 manager->setActiveModeIdentifier(modeIdentifier(a[1]));
             }
         }},
        {"setup", 4,
         [](P&, const A&) {
             if (Kit::Manager::sharedStyleManager()->modes().size() < 12) {
                 Kit::Manager::setup();
             }
         }},
        {"storeNumber", 1, [](P&, const A& a) { Kit::store(a[0]); }},
        drop(&P::managers, "dropManager", 1),
    };
}

} // namespace zeltest
