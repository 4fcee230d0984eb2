// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Appearance.h"
#include "tests/model/plain/Domain.h"
#include "tests/model/plain/Manager.h"
#include "tests/model/plain/Provider.h"

#include <deque>

namespace plain {

/// A domain in the registry, in order of creation.
struct Registered {
    std::string identifier;
    Ref<Domain> domain;
};

/// Everything that a process has one of.
struct World {
    std::uint64_t lastSerial = 0; // of a style
    std::vector<Domain*> domains; // all that live
    std::vector<Style*> styles;   // all that live
    std::vector<Registered> registry;
    std::vector<Ref<Provider>> providers;
    std::uint64_t providerMutations = 0;
    std::map<std::string, Color> systemColors;
    bool stylesAreSetUp = false;
    std::string appearanceName = "NSAppearanceNameAqua";
    bool hasDarkAppearance = true; // what a system before 10.14 lacks
    std::deque<std::function<void()>> queue;
    std::vector<Ref<CenterObserver>> center;
    Ref<Tracker> tracker;
    Ref<Manager> manager;
    std::optional<std::variant<std::string, std::uint64_t>> stored; // the chosen mode
};

World& world();

} // namespace plain
