// SPDX-License-Identifier: Apache-2.0
#include "domain/BoundStyles.h"
#include "domain/DomainState.h"
#include "domain/ListenerWalk.h"
#include "platform/locks/DeliveryGate.h"
#include "platform/objects/StylingChanges.h"
#include "style/UpperFloor.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleable.h>

#include <optional>

namespace zel {
inline namespace v1 {
namespace {

/// Whether a listener is called with a style: where the delivery forces it, as it is known to do
/// throughout an epoch, or where the style is not the one delivered to it last.
inline bool isDue(const std::shared_ptr<ZelStyle>& style, const ObjectState& listener,
                  const ZelStyleDelivery& delivery, std::uint64_t forcedEpoch) {
    return listener.lastZelStyle.load(std::memory_order_relaxed) != serialOf(style) ||
           forcedEpoch == StyleLookupEpoch::now() || isForced(style, delivery);
}

/// Notes the style as delivered. Notifications without a filter say themselves, once, that they
/// did: a count for each listener would cost as much as the rest of this.
inline void remember(const std::shared_ptr<ZelStyle>& style, ObjectState& listener,
                     const ZelStyleDelivery& delivery) {
    const std::uint64_t serial = serialOf(style);
    if (listener.lastZelStyle.load(std::memory_order_relaxed) == serial) {
        return;
    }
    listener.lastZelStyle.store(serial, std::memory_order_relaxed);
    if (delivery.withEvent == ZelStyleChangeEventInitial) {
        StylingChanges::note();
    } else if (delivery.forStyleOnly) {
        StylingChanges::noteDelivery();
    }
}

} // namespace

/// The targets of the notification under way, from the innermost outwards.
struct ZelStyleDomain::NotificationPath {
    const NSObject* target;
    const NotificationPath* above;

    [[nodiscard]] bool contains(const NSObject& object) const {
        for (const NotificationPath* each = this; each; each = each->above) {
            if (each->target == &object) {
                return true;
            }
        }
        return false;
    }
};

// Deliberate: the style is remembered after each call, so that an unforced change reaches only the
// owner's first handler; a forced one reaches them all.
void ZelStyleDomain::_applyStyle(const std::shared_ptr<ZelStyle>& style,
                                 const ChangeHandlersToCall& onChangeHandlers,
                                 const std::shared_ptr<NSObject>& withOwner,
                                 const ZelStyleDelivery& delivery, std::uint64_t forcedEpoch) {
    ObjectState& state = onChangeHandlers.ownerState();
    onChangeHandlers.forEach([&](const ZelStyleChangeHandler& handler) {
        if (isDue(style, state, delivery, forcedEpoch)) {
            handler(withOwner, style, delivery.withEvent);
            remember(style, state, delivery);
        }
    });
}

void ZelStyleDomain::_applyStyle(const std::shared_ptr<ZelStyle>& style,
                                 const std::shared_ptr<NSObject>& onChangeHandler,
                                 const ZelStyleDelivery& delivery, std::uint64_t forcedEpoch) {
    ObjectState& state = ObjectState::of(*onChangeHandler);
    if (isDue(style, state, delivery, forcedEpoch)) {
        onChangeHandler->styleChangedWithEvent(style, delivery.withEvent);
        remember(style, state, delivery);
    }
}

void ZelStyleDomain::notifyForStyleChangeOf(const std::shared_ptr<NSObject>& styleable,
                                            const ZelStyleDelivery& delivery) {
    const auto self = weak_from_this().lock(); // nil while the domain ends
    // Copies: handlers may clear what the caller passed.
    const std::shared_ptr<NSObject> target = styleable;
    const ZelStyleDelivery kept = delivery;
    notify(target, kept, nullptr);
}

// Without a listener the gate isn't taken: a domain is made, and says so to nobody, under the lock
// of the registry, which comes after the gate.
void ZelStyleDomain::notify(const std::shared_ptr<NSObject>& styleable,
                            const ZelStyleDelivery& delivery, const NotificationPath* above) {
    if (hasListeners()) {
        const DeliveryGate gate;
        notifyOwners(styleable, delivery);
        notifyObjects(styleable, delivery);
    }
    if (styleable) {
        notifyAssociated(*styleable, delivery, NotificationPath{styleable.get(), above});
    }
}

bool ZelStyleDomain::hasListeners() const {
    {
        const RecursiveGuard guard(state_->changeHandlersByOwner->lock);
        if (!state_->changeHandlersByOwner->isEmpty()) {
            return true;
        }
    }
    const RecursiveGuard guard(state_->changeHandlers->lock);
    return !state_->changeHandlers->isEmpty();
}

void ZelStyleDomain::notifyOwners(const std::shared_ptr<NSObject>& styleable,
                                  const ZelStyleDelivery& delivery) {
    const auto& table = state_->changeHandlersByOwner;
    ListenerWalk<ChangeHandlers> walk(table, styleable);
    const std::uint64_t bound = state_->handlerSerial;
    ChangeHandlerTable::Call call(*table);
    applyToEach(walk, state_->ownersByStyle, delivery,
                [&](auto& entry, const auto& owner, const auto& style, std::uint64_t forcedEpoch) {
                    call.begin(entry);
                    _applyStyle(style, ChangeHandlersToCall(entry, bound), owner, delivery,
                                forcedEpoch);
                    call.end();
                });
}

void ZelStyleDomain::notifyObjects(const std::shared_ptr<NSObject>& styleable,
                                   const ZelStyleDelivery& delivery) {
    ListenerWalk<NoPayload> walk(state_->changeHandlers, styleable);
    applyToEach(
        walk, state_->objectsByStyle, delivery,
        [&](const auto& /*entry*/, const auto& object, const auto& style,
            std::uint64_t forcedEpoch) { _applyStyle(style, object, delivery, forcedEpoch); });
}

template <class Payload, class Apply>
void ZelStyleDomain::applyToEach(ListenerWalk<Payload>& walk, ListenersByStyle<Payload>& byStyle,
                                 const ZelStyleDelivery& delivery, Apply apply) {
    const StylingChanges::Delivering delivering(delivery.forStyleOnly != nullptr);
    BoundStyles styles(*this, delivery);
    const ListenerStamp begun = walk.stamp();
    const bool isOfFamily = !walk.hasTarget() && delivery.force && delivery.forStyleOnly &&
                            !StylingChanges::Delivering::isNested();
    if (isOfFamily && byStyle.isUsable(walk.table(), styles)) {
        walk.limitTo(byStyle, *delivery.forStyleOnly);
        styles.useForest(byStyle.forest());
    }
    const auto mayBeDue = [&](const auto& entry) { return styles.mayBeDue(*entry.state); };
    while (auto* entry = walk.next(mayBeDue)) {
        const std::shared_ptr<NSObject>& listener = walk.owner();
        const auto& found = styles.find(styleBindingOf(*listener, *entry->state));
        if (entry->isLive()) { // finding the style may have asked the host, and ended another one
            apply(*entry, listener, found.style, found.forcedEpoch());
        }
    }
    if (isOfFamily && walk.stamp() == begun) {
        byStyle.noteWalked(begun);
    }
}

// A circle of associated objects ends where it comes back to a target further up its own path.
void ZelStyleDomain::notifyAssociated(const NSObject& styleable, const ZelStyleDelivery& delivery,
                                      const NotificationPath& path) {
    const ZelStyleable* conforming = styleable.asZelStyleable();
    const auto associated = conforming ? conforming->associatedZelStyleables() : std::nullopt;
    if (!associated) {
        return;
    }
    for (const std::shared_ptr<NSObject>& each : *associated) {
        if (each && !path.contains(*each)) {
            notify(each, delivery, &path);
        }
    }
}

void deliverStyleUpdate(const std::shared_ptr<ZelStyleDomain>& domain,
                        const std::shared_ptr<ZelStyle>& style) {
    if (domain) {
        domain->notifyForStyleChangeOf(
            nullptr,
            {.withEvent = ZelStyleChangeEventChanged, .force = true, .forStyleOnly = style});
    }
}

std::shared_ptr<ZelStyleScheme> currentSchemeOf(const std::shared_ptr<ZelStyleDomain>& domain) {
    return domain ? domain->currentScheme() : nullptr;
}

} // namespace v1
} // namespace zel
