// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Domain.h"

#include "tests/model/plain/World.h"

#include <algorithm>
#include <utility>

namespace plain {

Ref<Scheme> Scheme::initWithIdentifier(Id identifier, const Ref<Domain>& domain) {
    identifier_ = std::move(identifier);
    domain_ = domain;
    return std::static_pointer_cast<Scheme>(shared_from_this());
}

namespace {

/// Has a style refer to these. Answers what a scheme keeps it under.
std::string attach(const Ref<Style>& style, const Ref<Domain>& domain, const Ref<Scheme>& scheme) {
    if (!style) {
        throw InvalidArgument("nil style");
    }
    style->setDomain(domain);
    style->setScheme(scheme);
    if (!style->identifier()) {
        throw InvalidArgument("nil identifier");
    }
    return *style->identifier();
}

} // namespace

void Scheme::addStyle(const Ref<Style>& style) {
    const auto key = attach(style, domain(), std::static_pointer_cast<Scheme>(shared_from_this()));
    const auto replaced = std::exchange(styles_[key], style);
}

void Scheme::removeStyle(const Ref<Style>& style) {
    const auto removed = styles_.extract(attach(style, nullptr, nullptr));
}

Ref<Style> Scheme::styleForIdentifier(const Id& identifier) const {
    const auto found = identifier ? styles_.find(*identifier) : styles_.end();
    return found == styles_.end() ? nullptr : found->second;
}

void Scheme::setStylesByIdentifier(std::map<std::string, Ref<Style>> styles) {
    styles_.swap(styles);
}

Domain::Domain() {
    world().domains.push_back(this);
}

Domain::~Domain() {
    try {
        setSchemeFollowsSystem(false);
    } catch (...) { // nobody is there to be told
    }
    std::erase(world().domains, this);
}

Ref<Domain> Domain::domainForIdentifier(const Id& identifier) {
    const std::string name = identifier.value_or("default");
    auto& registry = world().registry;
    const auto find = [&](const std::string& key) {
        return std::ranges::find(registry, key, &Registered::identifier);
    };
    if (name == "_reset") {
        std::vector<std::pair<std::string, Weak<Domain>>> doomed;
        for (const Registered& each : registry) {
            doomed.emplace_back(each.identifier, each.domain);
        }
        for (const auto& [key, domain] : doomed) {
            const auto found = find(key);
            if (found != registry.end() && found->domain == domain.lock()) {
                const auto removed = std::exchange(found->domain, nullptr);
                registry.erase(found);
            } // it may end here, and its handlers run
        }
    }
    if (const auto found = find(name); found != registry.end()) {
        return found->domain;
    }
    const auto domain = std::make_shared<Domain>();
    domain->initWithDomainIdentifier(name);
    registry.push_back({name, domain});
    return domain;
}

Ref<Domain> Domain::domainForStyleable(const Ref<Object>& styleable) {
    return styleable && styleable->isStyleable()
               ? domainForIdentifier(styleable->domainIdentifierOfZelStyleable())
               : nullptr;
}

Ref<Domain> Domain::initWithDomainIdentifier(const std::string& identifier) {
    setCurrentScheme(schemeForIdentifier("default"));
    identifier_ = identifier;
    return std::static_pointer_cast<Domain>(shared_from_this());
}

void Domain::setupStyles() {
    if (std::exchange(world().stylesAreSetUp, true)) {
        return;
    }
    const auto domain = domainForIdentifier("default");
    bool hasStyles = false;
    const auto make = [&](const char* scheme) {
        return std::make_shared<Style>()->initWithIdentifier(
            "main", domain->schemeForIdentifier(scheme), nullptr);
    };
    try {
        const auto light = make("light");
        domain->schemeForIdentifier("default")->addStyle(light);
        domain->schemeForIdentifier("light")->addStyle(light);
        domain->schemeForIdentifier("dark")->addStyle(make("dark"));
        hasStyles = true;
        domain->setSchemeFollowsSystem(true);
    } catch (...) { // what a provider kept from being made, the next setup makes
        world().stylesAreSetUp = hasStyles;
        throw;
    }
}

Ref<Scheme> Domain::schemeForIdentifier(const Id& identifier) {
    if (!identifier) {
        throw InvalidArgument("nil identifier");
    }
    auto& scheme = schemes_[*identifier];
    if (!scheme) {
        scheme = std::make_shared<Scheme>();
        scheme->initWithIdentifier(identifier,
                                   std::static_pointer_cast<Domain>(weak_from_this().lock()));
    }
    return scheme;
}

void Domain::setCurrentScheme(const Ref<Scheme>& scheme) {
    if (scheme == current_) {
        return;
    }
    { // what is dropped ends before anybody is told
        const auto outdatedScheme = std::exchange(current_, scheme);
        const auto outdatedStyle = std::exchange(main_, nullptr);
    }
    notifyForStyleChangeOf(nullptr, {.withEvent = 1});
}

void Domain::setSchemeFollowsSystem(bool follows) {
    if (follows == follows_) {
        return;
    }
    follows_ = follows;
    if (follows) {
        startObserving(weak_from_this(), this, [this] { updateFromSystemAppearance(); });
    } else {
        stopObserving(this);
    }
    updateFromSystemAppearance();
}

void Domain::updateFromSystemAppearance() {
    auto target = schemeForIdentifier("light");
    if (follows_ && tracker().currentAppearanceType() == 1) {
        target = schemeForIdentifier("dark");
    }
    setCurrentScheme(target);
}

Ref<Style> Domain::mainStyle() {
    if (!main_) {
        main_ = styleForIdentifier("main");
    }
    return main_;
}

Ref<Style> Domain::styleForIdentifier(const Id& identifier) {
    const auto style = current_ ? current_->styleForIdentifier(identifier) : nullptr;
    return style ? style : schemes_["default"]->styleForIdentifier(identifier);
}

Ref<Style> Domain::styleFor(const Ref<Object>& styleable) {
    Id scheme, style;
    for (auto each = styleable; each && !(scheme && style); each = each->parentZelStyleable()) {
        scheme = scheme ? scheme : each->customZelStyleSchemeIdentifier();
        style = style ? style : each->customZelStyleIdentifier();
    }
    Ref<Style> found;
    if (scheme) {
        found = schemeForIdentifier(scheme)->styleForIdentifier(style ? style : "main");
    } else if (style) {
        found = styleForIdentifier(style);
    }
    return found ? found : mainStyle();
}

bool Domain::isEqualOrChildOf(const Ref<Object>& object, const Ref<Object>& other) {
    for (auto each = object; each; each = each->parentZelStyleable()) {
        if (each == other) {
            return true;
        }
    }
    return false;
}

} // namespace plain
