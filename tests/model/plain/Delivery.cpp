// SPDX-License-Identifier: Apache-2.0
#include "tests/model/plain/Domain.h"
#include "tests/model/plain/World.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace plain {

/// The time of a call to handlers of one group.
class Domain::Calling {
public:
    explicit Calling(Ref<Group> group) : group_(std::move(group)) { ++group_->calls; }
    Calling(const Calling&) = delete;
    Calling& operator=(const Calling&) = delete;
    ~Calling() {
        if (--group_->calls == 0) {
            const auto ended = std::exchange(group_->removed, {});
        }
    }

private:
    Ref<Group> group_;
};

Ref<Style> Domain::notifyStyleFor(const Ref<Object>& object) {
    return object->isStyleable() ? styleFor(object) : mainStyle();
}

bool Domain::applies(const Ref<Style>& style, const Object& owner, const Delivery& delivery) {
    const auto& only = delivery.forStyleOnly;
    const bool forced =
        delivery.force && (!only || style == only || (style && style->isChildOf(only)));
    return forced || owner.last != serialOf(style);
}

void Domain::call(const Listener& listener, const Ref<Object>& owner, const Ref<Style>& style,
                  std::uint64_t event) {
    if (listener.handler) {
        listener.handler(owner, style, event);
    } else {
        owner->styleChangedWithEvent(style, event);
    }
    owner->last = serialOf(style); // not where the handler raised
}

void Domain::registerChangeHandler(Handler handler, const Ref<Object>& withOwner) {
    if (!withOwner) {
        return;
    }
    if (!handler) {
        throw InvalidArgument("nil handler");
    }
    const auto held = weak_from_this().lock();
    const auto latest = std::find_if(owners_.rbegin(), owners_.rend(), [&](const auto& each) {
        return each->address == withOwner.get();
    });
    const bool isFirst = latest == owners_.rend();
    const auto listener = std::make_shared<Listener>(
        Listener{withOwner, withOwner.get(), std::move(handler),
                 isFirst ? std::make_shared<Group>() : (*latest)->group});
    owners_.insert(isFirst ? owners_.end() : latest.base(), listener);
    const Calling calling(listener->group);
    call(*listener, withOwner, notifyStyleFor(withOwner), 0);
}

void Domain::registerChangeHandler(const Ref<Object>& object) {
    if (!object) {
        return;
    }
    const auto held = weak_from_this().lock();
    if (std::ranges::find(objects_, object.get(), &Listener::address) == objects_.end()) {
        objects_.push_back(std::make_shared<Listener>(Listener{object, object.get(), {}, {}}));
    }
    call({object, object.get(), {}, {}}, object, notifyStyleFor(object), 0);
}

void Domain::remove(Listeners& listeners, const Object* owner) {
    Listeners removed; // ends after the table is whole again
    std::erase_if(listeners, [&](const Ref<Listener>& each) {
        const bool matches = owner ? each->address == owner : each->owner.expired();
        if (matches) {
            each->removed = true;
            (each->group && each->group->calls > 0 ? each->group->removed : removed)
                .push_back(each);
        }
        return matches;
    });
}

void Domain::unregisterChangeHandlersWithOwner(const Ref<Object>& owner) {
    if (owner) {
        remove(owners_, owner.get());
    }
}

void Domain::unregisterChangeHandler(const Ref<Object>& object) {
    if (object) {
        remove(objects_, object.get());
    }
}

void Domain::forgetTheDead() {
    remove(owners_, nullptr);
    remove(objects_, nullptr);
}

void Domain::notifyForStyleChangeOf(const Ref<Object>& styleable, const Delivery& delivery) {
    Path path;
    const auto held = weak_from_this().lock();
    notify(styleable, delivery, path);
}

void Domain::notify(const Ref<Object>& styleable, const Delivery& delivery, Path& path) {
    walk(owners_, styleable, delivery);
    walk(objects_, styleable, delivery);
    if (!styleable || !styleable->isStyleable()) {
        return;
    }
    path.push_back(styleable.get());
    for (const auto& each :
         styleable->associatedZelStyleables().value_or(std::vector<Ref<Object>>())) {
        if (each && std::ranges::find(path, each.get()) == path.end()) {
            notify(each, delivery, path);
        }
    }
    path.pop_back();
}

/// Serves the listeners there are now, owner by owner: one style for all of an owner's handlers.
void Domain::walk(const Listeners& listeners, const Ref<Object>& styleable,
                  const Delivery& delivery) {
    const std::vector<Weak<Listener>> now(listeners.begin(), listeners.end());
    Ref<Object> owner;
    std::optional<Calling> calling;
    Ref<Style> style;
    bool concerned = false;
    for (const auto& each : now) {
        if (const auto next = each.lock(); next && owner && owner.get() != next->address) {
            calling.reset();
            owner.reset(); // it may end here, and what its handlers held
        }
        const auto listener = each.lock();
        if (!listener || listener->removed) {
            continue;
        }
        if (!owner) {
            owner = listener->owner.lock();
            if (listener->group) {
                calling.emplace(listener->group);
            }
            concerned = owner && (!styleable ||
                                  (owner->isStyleable() && isEqualOrChildOf(owner, styleable)));
            style = concerned ? notifyStyleFor(owner) : nullptr;
        }
        if (concerned && applies(style, *owner, delivery)) {
            call(*listener, owner, style, delivery.withEvent);
        }
    }
}

} // namespace plain
