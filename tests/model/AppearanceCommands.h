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

template <class Kit>
const std::vector<Command<Kit>>& appearanceCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::vector<Command<Kit>> all = {
        {"appear", 20,
         [](P&, const A& a) {
             static const std::array<std::string, 6> names = {
                 "NSAppearanceNameAqua",
                 "NSAppearanceNameDarkAqua",
                 "NSAppearanceNameVibrantDark",
                 "NSAppearanceNameAccessibilityHighContrastDarkAqua",
                 "NSAppearanceNameVibrantLight",
                 "a name of its own"};
             Kit::appear(at(names, a[0]));
         }},
        {"setAppearanceType", 4,
         [](P&, const A& a) { Kit::tracker().setCurrentAppearanceType(a[0] % 3); }},
        {"determine", 4, [](P&, const A&) { Kit::tracker().determineFromSystemAppearance(); }},
        {"darkAppearanceExists", 2,
         [](P&, const A& a) { Kit::setDarkAppearanceExists(a[0] % 3 != 0); }},
        {"drain", 25, [](P& p, const A&) { drainOnce(p); }},
        {"observeType", 5,
         [](P& p, const A& a) {
             const auto thing = at(p.things, a[0]);
             if (thing.controls && !std::exchange(thing.controls->observesType, true)) {
                 thing.controls->onType = [&p, number = ++p.made, program = a[1]](bool isPrior) {
                     p.trace.put(Mark::TypeAnnounced);
                     p.trace.put(number);
                     p.trace.put(isPrior);
                     p.trace.put(Kit::tracker().currentAppearanceType());
                     p.perform(program);
                 };
                 Kit::observeType(thing.object);
             }
         }},
        {"stopObservingType", 2,
         [](P& p, const A& a) {
             const auto thing = at(p.things, a[0]);
             if (thing.controls && std::exchange(thing.controls->observesType, false)) {
                 Kit::unobserveType(thing.object);
             }
         }},
        {"observePosts", 4,
         [](P& p, const A& a) {
             const auto thing = at(p.things, a[0]);
             if (thing.controls && !std::exchange(thing.controls->observesPosts, true)) {
                 Kit::observePosts(thing.object, [&p, number = ++p.made, program = a[1]] {
                     p.trace.put(Mark::Posted);
                     p.trace.put(number);
                     p.perform(program);
                 });
             }
         }},
        {"stopObservingPosts", 2,
         [](P& p, const A& a) {
             const auto thing = at(p.things, a[0]);
             if (thing.controls && std::exchange(thing.controls->observesPosts, false)) {
                 Kit::unobservePosts(thing.object);
             }
         }},
        {"systemColors", 2, [](P&, const A& a) { Kit::setSystemColors(a[0] % 2 == 0); }},
    };
    return all;
}

inline std::optional<std::string> modeIdentifier(unsigned number) {
    static const std::array<std::optional<std::string>, 6> all = {
        "always-light", "always-dark", "follow-system", "own", "follow-system", std::nullopt};
    return at(all, number);
}

/// The shared manager, or one of the script's own.
template <class Kit>
auto managerOf(Player<Kit>& p, unsigned number) {
    return number % 3 == 2 ? Kit::Manager::sharedStyleManager() : p.managers[number % 3];
}

template <class Kit>
const std::vector<Command<Kit>>& managerCommands() {
    using P = Player<Kit>;
    using A = Arguments;
    static const std::array<std::optional<std::string>, 6> names = {"a",     "B", "b",
                                                                    "Light", "c", std::nullopt};
    static const std::vector<Command<Kit>> all = {
        {"newManager", 4, [](P& p, const A& a) { slot(p.managers, a[0]) = Kit::makeManager(); }},
        {"newMode", 8,
         [](P& p, const A& a) {
             slot(p.modes, a[0]) = Kit::template make<typename Kit::Mode>()->initWithIdentifier(
                 modeIdentifier(a[1]), a[2] % 3 * 10, at(names, a[3]));
         }},
        {"setMode", 3,
         [](P& p, const A& a) {
             if (const auto mode = at(p.modes, a[0])) {
                 mode->setIdentifier(modeIdentifier(a[1]));
                 mode->setRank(a[2] % 3 * 5);
                 mode->setName(at(names, a[3]));
             }
         }},
        {"addMode", 10,
         [](P& p, const A& a) {
             const auto manager = managerOf(p, a[0]);
             const auto mode = at(p.modes, a[1]);
             if (manager && manager->modes().size() < 12) {
                 manager->addMode(mode);
             }
         }},
        {"removeMode", 6,
         [](P& p, const A& a) {
             const auto manager = managerOf(p, a[0]);
             const auto mode = at(p.modes, a[1]);
             if (manager) {
                 manager->removeMode(mode);
             }
         }},
        {"activateMode", 4,
         [](P& p, const A& a) {
             if (const auto mode = at(p.modes, a[0])) {
                 mode->setActive(a[1] % 4 != 0);
             }
         }},
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
        {"dropManager", 1,
         [](P& p, const A& a) {
             const auto dropped = std::exchange(slot(p.managers, a[0]), nullptr);
         }},
    };
    return all;
}

} // namespace zeltest
