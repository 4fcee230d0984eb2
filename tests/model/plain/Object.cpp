// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Object.h"

#include "tests/model/plain/World.h"

#include <algorithm>
#include <utility>

namespace plain {

Object::~Object() {
    for (const std::size_t table : {0, 1}) {
        const auto count = table == 0 ? world().domains.size() : world().styles.size();
        for (std::size_t i = 0; i < count; ++i) {
            table == 0 ? world().domains[i]->forgetTheDead() : world().styles[i]->forgetTheDead();
        }
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

namespace {

void refuseCycle(const Object* parent, const Object* child) {
    for (Ref<Object> held; parent; held = parent->parentZelStyleable(), parent = held.get()) {
        if (parent == child) {
            throw std::invalid_argument("below itself");
        }
    }
}

} // namespace

View::~View() = default;

void View::addSubview(const Ref<View>& view) {
    refuseCycle(this, view.get());
    view->removeFromSuperview();
    children_.push_back(view);
    view->parent_ = std::static_pointer_cast<View>(shared_from_this());
}

void View::removeFromSuperview() {
    const auto self = std::static_pointer_cast<View>(shared_from_this());
    if (const auto old = std::exchange(parent_, {}).lock()) {
        std::erase(old->children_, self);
    }
}

void Controller::addChildViewController(const Ref<Controller>& child) {
    refuseCycle(this, child.get());
    child->removeFromParentViewController();
    children_.push_back(child);
    child->parent_ = std::static_pointer_cast<Controller>(shared_from_this());
}

void Controller::removeFromParentViewController() {
    const auto self = std::static_pointer_cast<Controller>(shared_from_this());
    if (const auto old = std::exchange(parent_, {}).lock()) {
        std::erase(old->children_, self);
    }
}

std::optional<std::vector<Ref<Object>>> Controller::associatedZelStyleables() const {
    return view_ ? std::optional(std::vector<Ref<Object>>{view_}) : std::nullopt;
}

} // namespace plain
