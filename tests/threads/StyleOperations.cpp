// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Operations.h"

namespace zeltest {

using namespace zel;

namespace {

bool accept(const std::shared_ptr<ZelStyle>& changed) {
    changed->setAccentColor(NSColor::blackColor());
    return true;
}

void observeUpdates(World& world) {
    const auto owner = alloc<NSObject>();
    world.style->addStyleUpdateObserver([](const auto&, const auto&, bool) {}, owner, true);
    world.style->removeStyleUpdateObserverWithOwner(owner);
}

void inherit(World& world) {
    const auto child = world.style->inheritedStyleWithChanges(
        [](const auto&, const auto& made) { made->setAccentColor(NSColor::whiteColor()); },
        std::nullopt, nullptr);
    (void)child->accentColor();
}

void changeProviders(World& world) {
    ZelStyle::addDefaultValueProvider(world.provider);
    (void)alloc<ZelStyle>()->initWithIdentifier("root", world.scheme);
    ZelStyle::removeDefaultValueProvider(world.provider);
}

void changeScheme(World& world) {
    const auto scheme = alloc<ZelStyleScheme>()->initWithIdentifier("of one's own", world.domain);
    scheme->addStyle(world.style); // ties it to this scheme
    scheme->removeStyle(world.style);
    world.style->setScheme(world.scheme);
    world.style->setDomain(world.domain);
}

std::vector<Operation> valueOperations() {
    return {
        {"ZelStyle::valueForAttribute", true,
         [](World& world) { (void)world.style->valueForAttribute("accentColor"); }},
        {"ZelStyle::effectiveValueForAttribute", true,
         [](World& world) { (void)world.style->effectiveValueForAttribute("labelColor"); }},
        {"ZelStyle::effectiveValues", true,
         [](World& world) { (void)world.style->effectiveValues()->size(); }},
        {"ZelStyleBasePalette::isDarkStyle", true,
         [](World& world) { (void)world.style->isDarkStyle(); }},
        {"ZelStyleBasePalette::isLightStyle", true,
         [](World& world) { (void)world.style->isLightStyle(); }},
        {"ZelStyleBasePalette::isCustomStyle", true,
         [](World& world) { (void)world.style->isCustomStyle(); }},
        {"ZelStyle::setValue", true,
         [](World& world) { world.style->setValue(NSColor::clearColor(), "labelColor"); }},
        {"ZelStyle::updateStyleWithChanges", true,
         [](World& world) { world.style->updateStyleWithChanges(accept); }},
        {"ZelStyle::inheritedStyleWithChanges", true, inherit},
        {"ZelStyle::addStyleUpdateObserver", true, observeUpdates},
        {"ZelStyle::removeStyleUpdateObserverWithOwner", true, observeUpdates},
        {"ZelStyle::defaultValueProviders", false,
         [](World&) { (void)ZelStyle::defaultValueProviders().size(); }},
        {"ZelStyle::addDefaultValueProvider", false, changeProviders},
        {"ZelStyle::removeDefaultValueProvider", false, changeProviders},
    };
}

std::vector<Operation> accessors() {
    return {
        {"ZelStyle::ZelStyle", true, [](World&) { (void)alloc<ZelStyle>(); }},
        {"ZelStyle::initWithIdentifier", true,
         [](World& world) {
             (void)alloc<ZelStyle>()->initWithIdentifier("root", world.scheme);
             (void)alloc<ZelStyle>()->initWithIdentifier("child", nullptr, world.style);
         }},
        {"ZelStyle::forStyleable", true,
         [](World& world) { (void)ZelStyle::forStyleable(world.object); }},
        {"ZelStyle::isChildOf", true,
         [](World& world) { (void)world.style->isChildOf(world.parent); }},
        {"ZelStyle::domain", true, [](World& world) { (void)world.style->domain(); }},
        {"ZelStyle::setDomain", true, [](World& world) { world.style->setDomain(world.domain); }},
        {"ZelStyle::scheme", true, [](World& world) { (void)world.style->scheme(); }},
        {"ZelStyle::setScheme", true, [](World& world) { world.style->setScheme(world.scheme); }},
        {"ZelStyle::parentStyle", true, [](World& world) { (void)world.style->parentStyle(); }},
        {"ZelStyle::setParentStyle", true,
         [](World& world) { world.style->setParentStyle(world.parent); }},
        {"ZelStyle::identifier", true, [](World& world) { (void)world.style->identifier(); }},
        {"ZelStyle::setIdentifier", true,
         [](World& world) { world.style->setIdentifier("style"); }},
        {"ZelStyle::seed", true, [](World& world) { (void)world.style->seed(); }},
        {"ZelStyle::token", true, [](World& world) { (void)world.style->token(); }},
        {"ZelStyleToken::ZelStyleToken", true,
         [](World& world) { (void)ZelStyleToken(world.style); }},
        {"ZelStyleToken::serial", true, [](World& world) { (void)world.style->token().serial(); }},
        {"ZelStyleToken::isNil", true, [](World& world) { (void)world.style->token().isNil(); }},
    };
}

std::vector<Operation> schemeOperations() {
    return {
        {"ZelStyleScheme::ZelStyleScheme", true, changeScheme},
        {"ZelStyleScheme::initWithIdentifier", true, changeScheme},
        {"ZelStyleScheme::addStyle", true, changeScheme},
        {"ZelStyleScheme::removeStyle", true, changeScheme},
        {"ZelStyleScheme::domain", true, [](World& world) { (void)world.scheme->domain(); }},
        {"ZelStyleScheme::identifier", true,
         [](World& world) { (void)world.scheme->identifier(); }},
        {"ZelStyleScheme::styleForIdentifier", true,
         [](World& world) { (void)world.scheme->styleForIdentifier("style"); }},
        {"ZelStyleScheme::stylesByIdentifier", true,
         [](World& world) { (void)world.scheme->stylesByIdentifier().size(); }},
        {"ZelStyleScheme::setStylesByIdentifier", true,
         [](World& world) {
             world.scheme->setStylesByIdentifier({{"style", world.style}});
         }},
    };
}

std::vector<Operation> providerOperations() {
    using Provider = ZelStyleDefaultValueProvider;
    constexpr auto make = [](World&) {
        (void)Provider::providerWithIdentifier("x", std::nullopt, nullptr);
    };
    constexpr auto run = [](World& world) {
        world.provider->willApply(world.provider, world.style, world.scheme);
        world.provider->provideDefaultValuesFor(world.style, world.scheme);
        world.provider->didApply(world.provider, world.style, world.scheme);
    };
    constexpr auto require = [](World& world) {
        world.provider->setRequiredDefaultValueProviders(Provider::Identifiers{"base"});
        (void)world.provider->requiredDefaultValueProviders();
    };
    constexpr auto setBlocks = [](World& world) {
        world.provider->setProviderBlock([](const auto&, const auto&) {});
        world.provider->setWillApplyBlock(
            [](const auto&, const auto&, const auto&, const auto&) {});
        world.provider->setDidApplyBlock([](const auto&, const auto&, const auto&, const auto&) {});
        (void)world.provider->providerBlock();
        (void)world.provider->willApplyBlock();
        (void)world.provider->didApplyBlock();
    };
    std::vector<Operation> operations;
    const auto add = [&](void (*does)(World&), std::initializer_list<const char*> names) {
        for (const char* name : names) {
            operations.push_back(
                {std::string("ZelStyleDefaultValueProvider::") + name, true, does});
        }
    };
    add(make, {"ZelStyleDefaultValueProvider", "providerWithIdentifier", "initWithIdentifier"});
    add([](World& world) { (void)world.provider->identifier(); }, {"identifier"});
    add(run, {"willApply", "provideDefaultValuesFor", "didApply"});
    add(require, {"requiredDefaultValueProviders", "setRequiredDefaultValueProviders"});
    add(setBlocks, {"providerBlock", "setProviderBlock", "willApplyBlock", "setWillApplyBlock",
                    "didApplyBlock", "setDidApplyBlock"});
    return operations;
}

} // namespace

std::vector<Operation> styleOperations() {
    std::vector<Operation> all = valueOperations();
    for (auto each : {accessors(), schemeOperations(), providerOperations()}) {
        all.insert(all.end(), each.begin(), each.end());
    }
    return all;
}

} // namespace zeltest
