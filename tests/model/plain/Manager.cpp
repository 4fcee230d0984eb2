// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Manager.h"

#include "tests/model/plain/World.h"

#include <algorithm>
#include <cctype>

namespace plain {

Ref<Manager> Manager::sharedStyleManager() {
    if (!world().manager) {
        world().manager = std::make_shared<Manager>();
    }
    return world().manager;
}

void Manager::setup() {
    Domain::setupStyles();
    const auto add = [](const char* identifier, std::uint64_t rank, const char* name) {
        sharedStyleManager()->addMode(
            std::make_shared<Mode>()->initWithIdentifier(identifier, rank, name));
    };
    add("always-light", 0, "Light");
    add("always-dark", 10, "Dark");
    add("follow-system", 100, "Follow system appearance");
}

void Manager::addMode(const Ref<Mode>& mode) {
    if (!mode) {
        throw InvalidArgument("nil mode");
    }
    const auto key = [](const Ref<Mode>& each) {
        Id name = each->name();
        if (name) { // in the tests ASCII alone
            std::ranges::transform(*name, name->begin(),
                                   [](unsigned char c) { return std::tolower(c); });
        }
        return std::pair(each->rank(), name);
    };
    mode->setManager(std::static_pointer_cast<Manager>(shared_from_this()));
    modes_.push_back(mode);
    std::ranges::stable_sort(modes_, {}, key);
    updateActiveMode();
}

void Manager::removeMode(const Ref<Mode>& mode) {
    if (const auto held = mode) {
        held->setManager(nullptr);
        std::erase(modes_, held);
    }
    updateActiveMode();
}

std::variant<std::string, std::uint64_t> Manager::activeModeIdentifier() const {
    return world().stored.value_or("follow-system");
}

void Manager::setActiveModeIdentifier(const Id& identifier) {
    world().stored.reset();
    if (identifier) {
        world().stored = *identifier;
    }
    updateActiveMode();
}

void Manager::updateActiveMode() {
    const auto found = std::ranges::find_if(modes_, [&](const Ref<Mode>& each) {
        const auto stored = activeModeIdentifier();
        const auto* const text = std::get_if<std::string>(&stored);
        return text && each->identifier() == *text;
    });
    const auto chosen = found != modes_.end() ? *found : modes_.empty() ? nullptr : modes_.front();
    if (chosen) {
        chosen->setActive(true);
    }
}

Ref<Mode> Mode::initWithIdentifier(const Id& identifier, std::uint64_t rank, const Id& name) {
    identifier_ = identifier;
    rank_ = rank;
    name_ = name;
    return std::static_pointer_cast<Mode>(shared_from_this());
}

void Mode::setActive(bool active) {
    if (!active) {
        return;
    }
    const auto domain = Domain::domainForIdentifier("default");
    if (identifier_ == "always-dark" || identifier_ == "always-light") {
        const auto scheme =
            domain->schemeForIdentifier(identifier_ == "always-dark" ? "dark" : "light");
        domain->setSchemeFollowsSystem(false);
        domain->setCurrentScheme(scheme);
    } else if (identifier_ == "follow-system") {
        domain->setSchemeFollowsSystem(true);
    }
}

} // namespace plain
