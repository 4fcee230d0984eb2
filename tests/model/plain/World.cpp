// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/World.h"

#include <algorithm>

namespace plain {

World& world() {
    static auto* const world = new World(); // outlives whatever ends with the process
    return *world;
}

Tracker& tracker() {
    if (!world().tracker) {
        world().tracker = std::make_shared<Tracker>();
        world().tracker->determineFromSystemAppearance();
    }
    return *world().tracker;
}

void startObserving(const Weak<Object>& observer, const Object* address,
                    std::function<void()> callback) {
    world().center.push_back(
        std::make_shared<CenterObserver>(CenterObserver{observer, address, std::move(callback)}));
}

void stopObserving(const Object* address) {
    std::erase_if(world().center, [&](const Ref<CenterObserver>& each) {
        each->removed = each->removed || each->address == address;
        return each->address == address;
    });
}

namespace {

void post() {
    std::erase_if(world().center, [](const auto& each) { return each->observer.expired(); });
    const auto now = world().center;
    for (const auto& each : now) {
        const auto held = each->observer.lock();
        if (held && !each->removed) {
            each->callback();
        }
    }
}

} // namespace

void Tracker::setCurrentAppearanceType(std::uint64_t type) {
    if (type == type_) {
        return;
    }
    tellObservers(true);
    type_ = type;
    tellObservers(false);
    world().queue.emplace_back(post);
}

void Tracker::determineFromSystemAppearance() {
    const std::string& name = world().appearanceName;
    const bool dark = name == "NSAppearanceNameDarkAqua" || name == "NSAppearanceNameVibrantDark" ||
                      name == "NSAppearanceNameAccessibilityHighContrastDarkAqua";
    setCurrentAppearanceType(dark && world().hasDarkAppearance ? 1 : 0);
}

void Tracker::tellObservers(bool isPrior) {
    std::erase_if(observers_, [](const auto& each) { return each.expired(); });
    const auto now = observers_;
    for (const auto& each : now) {
        const auto observer = each.lock();
        const bool still = std::ranges::any_of(
            observers_, [&](const Weak<Object>& other) { return other.lock() == observer; });
        if (observer && still) {
            observer->typeChanges(isPrior);
        }
    }
}

void Tracker::removeObserver(const Ref<Object>& observer) {
    std::erase_if(observers_, [&](const Weak<Object>& each) { return each.lock() == observer; });
}

void setEffectiveAppearance(const std::string& name) {
    if (world().appearanceName != name) {
        world().appearanceName = name;
        if (world().hasDarkAppearance && world().tracker) {
            world().tracker->determineFromSystemAppearance();
        }
    }
}

void drain() {
    for (std::size_t count = world().queue.size(); count > 0; --count) {
        const auto task = world().queue.front();
        world().queue.pop_front();
        task();
    }
}

} // namespace plain
