// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Operations.h"

#include <typeinfo>

namespace zeltest {

using namespace zel;

namespace {

void makeDomain(World&) {
    const auto made = alloc<ZelStyleDomain>()->initWithDomainIdentifier("of one's own");
    (void)made->domainIdentifier();
}

void listen(World& world) {
    const auto owner = std::make_shared<Member>(std::nullopt, world.object);
    world.domain->registerChangeHandler([](const auto&, const auto&, auto) {}, owner);
    world.domain->registerChangeHandler(owner);
    world.domain->unregisterChangeHandlersWithOwner(owner);
    world.domain->unregisterChangeHandler(owner);
}

void listenAsStyleable(World& world) {
    const auto owner = std::make_shared<Member>(std::nullopt, world.object);
    owner->registerStyleableChangeHandler([](const auto&, const auto&, auto) {});
    owner->unregisterStyleableChangeHandlers();
}

void switchScheme(World& world) {
    const auto former = world.domain->currentScheme();
    world.domain->setCurrentScheme(world.domain->darkScheme());
    world.domain->setCurrentScheme(former);
}

void followSystem(World& world) {
    const auto former = world.domain->currentScheme();
    world.domain->setSchemeFollowsSystem(true);
    world.domain->setSchemeFollowsSystem(false);
    world.domain->setCurrentScheme(former);
}

void observe(World& world) {
    const auto observer = alloc<NSObject>();
    const auto& object = world.object;
    object->addObserver(observer, "key", NSKeyValueObservingOptions::Prior, &world);
    object->willChangeValueForKey("key");
    object->didChangeValueForKey("key");
    object->removeObserver(*observer, "key", &world);
}

class Placed : public NSObject {
public:
    ZelStyleableNode node{*this};
};

void place(World&) {
    const auto above = alloc<Placed>();
    const auto below = alloc<Placed>();
    below->node.setParent(&above->node);
    above->node.leave();
    (void)below->node.object();
}

std::vector<Operation> nodeAndObjectOperations() {
    return {
        {"NSObject::NSObject", true, [](World&) { (void)alloc<NSObject>(); }},
        {"NSObject::init", true, [](World&) { (void)alloc<NSObject>()->init(); }},
        {"NSObject::registerStyleableChangeHandler", true, listenAsStyleable},
        {"NSObject::unregisterStyleableChangeHandlers", true, listenAsStyleable},
        {"NSObject::customZelStyleIdentifier", true,
         [](World& world) { (void)world.object->customZelStyleIdentifier(); }},
        {"NSObject::setCustomZelStyleIdentifier", true,
         [](World& world) { world.object->setCustomZelStyleIdentifier("style"); }},
        {"NSObject::customZelStyleSchemeIdentifier", true,
         [](World& world) { (void)world.object->customZelStyleSchemeIdentifier(); }},
        {"NSObject::setCustomZelStyleSchemeIdentifier", true,
         [](World& world) { world.object->setCustomZelStyleSchemeIdentifier("aside"); }},
        {"NSObject::lastZelStyle", true, [](World& world) { (void)world.object->lastZelStyle(); }},
        {"NSObject::setLastZelStyle", true,
         [](World& world) { world.object->setLastZelStyle(world.style->token()); }},
        {"NSObject::addObserver", true, observe},
        {"NSObject::removeObserver", true, observe},
        {"NSObject::willChangeValueForKey", true, observe},
        {"NSObject::didChangeValueForKey", true, observe},
        {"ZelStyleableNode::ZelStyleableNode", true, place},
        {"ZelStyleableNode::object", true, place},
        {"ZelStyleableNode::setParent", true, place},
        {"ZelStyleableNode::leave", true, place},
    };
}

std::vector<Operation> lookUps() {
    return {
        {"ZelStyleDomain::defaultDomain", true,
         [](World&) { (void)ZelStyleDomain::defaultDomain(); }},
        {"ZelStyleDomain::domainForIdentifier", true,
         [](World&) { (void)ZelStyleDomain::domainForIdentifier("asked for"); }},
        {"ZelStyleDomain::domainForStyleable", true,
         [](World& world) { (void)ZelStyleDomain::domainForStyleable(world.object); }},
        {"ZelStyleDomain::domainIdentifier", true,
         [](World& world) { (void)world.domain->domainIdentifier(); }},
        {"ZelStyleDomain::styleClass", true,
         [](World& world) { (void)world.domain->styleClass(); }},
        {"ZelStyleDomain::setStyleClass", true,
         [](World& world) { world.domain->setStyleClass(typeid(World)); }},
        {"ZelStyleDomain::schemeForIdentifier", true,
         [](World& world) { (void)world.domain->schemeForIdentifier("asked for"); }},
        {"ZelStyleDomain::defaultScheme", true,
         [](World& world) { (void)world.domain->defaultScheme(); }},
        {"ZelStyleDomain::lightScheme", true,
         [](World& world) { (void)world.domain->lightScheme(); }},
        {"ZelStyleDomain::darkScheme", true,
         [](World& world) { (void)world.domain->darkScheme(); }},
        {"ZelStyleDomain::currentScheme", true,
         [](World& world) { (void)world.domain->currentScheme(); }},
        {"ZelStyleDomain::schemeFollowsSystem", true,
         [](World& world) { (void)world.domain->schemeFollowsSystem(); }},
        {"ZelStyleDomain::mainStyle", true, [](World& world) { (void)world.domain->mainStyle(); }},
        {"ZelStyleDomain::styleForIdentifier", true,
         [](World& world) { (void)world.domain->styleForIdentifier("style"); }},
        {"ZelStyleDomain::styleFor", true,
         [](World& world) { (void)world.domain->styleFor(world.object); }},
        {"ZelStyleDomain::isEqualOrChildOf", true,
         [](World& world) { (void)ZelStyleDomain::isEqualOrChildOf(world.object, world.object); }},
    };
}

} // namespace

std::vector<Operation> domainOperations() {
    std::vector<Operation> all{
        {"ZelStyleDomain::ZelStyleDomain", true, makeDomain},
        {"ZelStyleDomain::init", true, makeDomain},
        {"ZelStyleDomain::initWithDomainIdentifier", true, makeDomain},
        {"ZelStyleDomain::registerChangeHandler", true, listen},
        {"ZelStyleDomain::unregisterChangeHandlersWithOwner", true, listen},
        {"ZelStyleDomain::unregisterChangeHandler", true, listen},
        {"ZelStyleDomain::notifyForStyleChangeOf", true,
         [](World& world) {
             world.domain->notifyForStyleChangeOf(nullptr, {});
             world.domain->notifyForStyleChangeOf(world.object, {.force = true});
         }},
        {"ZelStyleDomain::setupStyles", false, [](World&) { ZelStyleDomain::setupStyles(); }},
        {"ZelStyleDomain::setCurrentScheme", false, switchScheme},
        {"ZelStyleDomain::setSchemeFollowsSystem", false, followSystem},
        {"alloc", true, [](World&) { (void)alloc<NSObject>(); }},
    };
    for (auto each : {lookUps(), nodeAndObjectOperations()}) {
        all.insert(all.end(), each.begin(), each.end());
    }
    return all;
}

} // namespace zeltest
