// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Object.h"

#include "tests/model/plain/World.h"

#include <utility>

namespace plain {

Object::~Object() {
    // Handlers end with it, and objects that they own; never a domain or a style.
    for (std::size_t i = 0, count = world().domains.size(); i < count; ++i) {
        world().domains[i]->forgetTheDead();
    }
    for (std::size_t i = 0, count = world().styles.size(); i < count; ++i) {
        world().styles[i]->forgetTheDead();
    }
}

void Object::notify() {
    if (isStyleable()) {
        const auto self = shared_from_this();
        Domain::domainForIdentifier(domainIdentifierOfZelStyleable())
            ->notifyForStyleChangeOf(self, {.withEvent = 1});
    }
}

void Object::setCustomZelStyleIdentifier(Id identifier) {
    styleIdentifier_ = std::move(identifier);
    notify();
}

void Object::setCustomZelStyleSchemeIdentifier(Id identifier) {
    schemeIdentifier_ = std::move(identifier);
    notify();
}

bool Object::registerStyleableChangeHandler(
    std::function<void(const Ref<Object>&, const Ref<Style>&, std::uint64_t)> handler) {
    const auto self = shared_from_this();
    const auto domain = Domain::domainForStyleable(self);
    if (domain) {
        domain->registerChangeHandler(std::move(handler), self);
    }
    return domain != nullptr;
}

bool Object::unregisterStyleableChangeHandlers() {
    const auto self = shared_from_this();
    const auto domain = Domain::domainForStyleable(self);
    if (domain) {
        domain->unregisterChangeHandlersWithOwner(self);
    }
    return domain != nullptr;
}

} // namespace plain
