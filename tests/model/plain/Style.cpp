// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Style.h"

#include "tests/model/plain/World.h"

#include <algorithm>
#include <utility>

namespace plain {

Style::Style() : serial(++world().lastSerial) {
    world().styles.push_back(this);
}

Style::~Style() {
    std::erase(world().styles, this);
}

Ref<Style> Style::initWithIdentifier(Id identifier, const Ref<Scheme>& scheme,
                                     const Ref<Style>& parentStyle) {
    identifier_ = std::move(identifier);
    domain_ = scheme ? scheme->domain() : nullptr;
    parent_ = parentStyle;
    if (!parentStyle) {
        Provider::setUpDefaultValues(self(), scheme);
    }
    return self();
}

Ref<Style> Style::forStyleable(const Ref<Object>& styleable) {
    return Domain::domainForIdentifier(styleable ? styleable->domainIdentifierOfZelStyleable()
                                                 : std::nullopt)
        ->styleFor(styleable);
}

bool Style::isChildOf(const Ref<Style>& other) const {
    for (Ref<Style> each = parentStyle(); each; each = each->parentStyle()) {
        if (each == other) {
            return true;
        }
    }
    return false;
}

std::optional<Value> Style::valueForAttribute(const Id& key) const {
    const auto found = key ? values_.find(*key) : values_.end();
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void Style::setValue(const std::optional<Value>& value, const Id& forAttribute) {
    if (!forAttribute) {
        throw InvalidArgument("nil key");
    }
    values_[*forAttribute] = value.value_or(Value());
    merged_.reset();
}

Ref<const Values> Style::effectiveValues() {
    if (merged_) {
        return merged_;
    }
    const auto parent = parentStyle();
    if (!parent) {
        return merged_ = std::make_shared<Values>(values_); // null markers included
    }
    Values merged = *parent->effectiveValues();
    for (const auto& [key, value] : values_) {
        if (std::holds_alternative<std::monostate>(value)) {
            merged.erase(key); // a child's null hides what it would inherit
        } else {
            merged[key] = value;
        }
    }
    return merged_ = std::make_shared<Values>(std::move(merged));
}

std::optional<Value> Style::effectiveValueForAttribute(const Id& key) {
    const auto merged = effectiveValues(); // merged for a nil key as well
    const auto found = key ? merged->find(*key) : merged->end();
    return found == merged->end() || std::holds_alternative<std::monostate>(found->second)
               ? std::nullopt
               : std::optional(found->second);
}

std::optional<Color> Style::color(const std::string& key) {
    const auto value = effectiveValueForAttribute(key);
    const auto* color = value ? std::get_if<Color>(&*value) : nullptr;
    return color ? std::optional(*color) : std::nullopt;
}

std::uint64_t Style::type() {
    const auto value = effectiveValueForAttribute("styleType");
    const auto* number = value ? std::get_if<std::uint64_t>(&*value) : nullptr;
    return number ? *number : 0;
}

void Style::updateStyleWithChanges(const Changes& changes) {
    const auto held = self();
    if (changes && !changes(held)) {
        return;
    }
    ++counter_;
    merged_.reset();
    callObservers();
    if (const auto domain = this->domain()) {
        domain->notifyForStyleChangeOf(nullptr,
                                       {.withEvent = 1, .force = true, .forStyleOnly = held});
    }
}

void Style::callObservers() {
    const std::uint64_t before = mutations_;
    for (std::size_t i = 0; i < observations_.size(); ++i) {
        const auto owner = observations_[i].owner.lock();
        const auto observer = observations_[i].observer;
        if (owner && observer) {
            (*observer)(owner, self(), false);
        }
        if (mutations_ != before) {
            throw EnumerationMutation("observers");
        }
    }
}

void Style::addStyleUpdateObserver(UpdateObserver observer, const Ref<Object>& withOwner,
                                   bool initialCall) {
    if (!observer || !withOwner) {
        return;
    }
    const auto held = self();
    const auto stored = std::make_shared<UpdateObserver>(std::move(observer));
    const auto found = std::ranges::find_if(
        observations_, [&](const Observation& each) { return each.owner.lock() == withOwner; });
    ++mutations_;
    Ref<UpdateObserver> replaced;
    if (found == observations_.end()) {
        observations_.push_back({withOwner, stored});
    } else {
        replaced = std::exchange(found->observer, stored);
    }
    replaced.reset();
    if (initialCall) {
        (*stored)(withOwner, held, true);
    }
}

void Style::removeStyleUpdateObserverWithOwner(const Ref<Object>& owner) {
    const auto found = std::ranges::find_if(
        observations_, [&](const Observation& each) { return each.owner.lock() == owner; });
    if (owner && found != observations_.end()) {
        const auto removed = *found;
        observations_.erase(found);
        ++mutations_;
    }
}

/// Lets the observers of ended owners go. Their places stay: a walk may be standing on one.
void Style::forgetTheDead() {
    std::vector<Ref<UpdateObserver>> gone;
    for (Observation& each : observations_) {
        if (each.owner.expired() && each.observer) {
            gone.push_back(std::exchange(each.observer, nullptr));
        }
    }
}

Ref<Style> Style::inheritedStyleWithChanges(InheritedChanges changes, Id identifier,
                                            const Ref<Scheme>& scheme) {
    if (const auto found = scheme ? scheme->styleForIdentifier(identifier) : nullptr) {
        return found;
    }
    const auto current = [&] { // what the domain is held for no longer than this
        const auto domain = this->domain();
        return domain ? domain->currentScheme() : nullptr;
    };
    const auto child = std::make_shared<Style>();
    child->initWithIdentifier(identifier, scheme ? scheme : current(), self());
    if (changes) {
        addStyleUpdateObserver(
            [changes](const Ref<Object>& owner, const Ref<Style>&, bool initial) {
                std::static_pointer_cast<Style>(owner)->updateStyleWithChanges(
                    [&](const Ref<Style>& each) {
                        changes(each->parentStyle(), each);
                        return !initial;
                    });
            },
            child, true);
    }
    if (scheme) {
        scheme->addStyle(child);
    }
    return child;
}

} // namespace plain
