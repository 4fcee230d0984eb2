// SPDX-License-Identifier: Apache-2.0
#include "domain/DomainInternals.h"
#include "domain/ListenerWalk.h"
#include "style/StylingLock.h"

#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleable.h>

namespace zel::inline v1 {
namespace {

/// The targets of the notification under way, from the innermost outwards.
struct NotificationPath {
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

/// Whether a listener is called with a style: where another one was delivered to its object last,
/// or where the delivery forces this one, as was found when it was looked up.
bool isDue(const FoundStyles::Found& found, const StylingState& listener,
           const ZelStyleDelivery& delivery) {
    if (listener.lastZelStyle.load(std::memory_order_relaxed) != found.serial) {
        return true;
    }
    return found.lookups == lookupChanges.now() ? found.isForced : isForced(found.style, delivery);
}

/// Calls an owner's later handlers, those that were registered before `bound`.
[[gnu::noinline]] void callLater(const FoundStyles::Found& found, Listener& listener,
                                 HandlerCalls& calls, const std::shared_ptr<NSObject>& owner,
                                 const ZelStyleDelivery& delivery, std::uint64_t bound) {
    for (const ChangeHandlers::Later& each : listener.handlers.later) {
        if (each.number >= bound || !listener.isLive()) {
            return;
        }
        if (isDue(found, *listener.state, delivery)) {
            calls.make(found.serial, [&] { each.handler(owner, found.style, delivery.withEvent); });
        }
    }
}

/// `_applyStyle:onChangeHandlers:withOwner:withEvent:force:forStyleOnly:`, of the handlers that
/// were registered before `bound`, and `_applyStyle:onChangeHandler:withEvent:force:…` where the
/// listener is a handler object. Deliberate: the style is remembered after each call, so that an
/// unforced change reaches only the owner's first handler; a forced one reaches them all.
inline void _applyStyle(const FoundStyles::Found& found, Listener& listener,
                        const std::shared_ptr<NSObject>& owner, const ZelStyleDelivery& delivery,
                        std::uint64_t bound) {
    if (!isDue(found, *listener.state, delivery)) {
        return;
    }
    HandlerCalls calls(listener);
    const ChangeHandlers& handlers = listener.handlers;
    if (!handlers.first) {
        calls.make(found.serial,
                   [&] { owner->styleChangedWithEvent(found.style, delivery.withEvent); });
        return;
    }
    calls.make(found.serial, [&] { handlers.first(owner, found.style, delivery.withEvent); });
    if (!handlers.later.empty()) [[unlikely]] {
        callLater(found, listener, calls, owner, delivery, bound);
    }
}

void deliver(ZelStyleDomain& domain, ListenerTable& table, const std::shared_ptr<NSObject>& target,
             const ZelStyleDelivery& delivery) {
    if (table.size() == 0) {
        return;
    }
    const ZelStyle* family = !target && delivery.force ? delivery.forStyleOnly.get() : nullptr;
    FoundStyles styles(domain, delivery);
    const std::uint64_t bound = table.nextHandler;
    ListenerWalk walk(table, styles, target, family);
    const auto building = family && walk.visitsAll() ? table.families.beginBuilding() : 0;
    while (Listener* const listener = (styles.endReplaced(), walk.next())) {
        const auto owner = listener->owner.lock();
        const auto* const found = owner ? walk.styleOf(*listener, *owner) : nullptr;
        if (found == nullptr) {
            continue;
        }
        if (building > 0 && found->style && listener->kind != Listener::Kind::Asked) [[unlikely]] {
            table.families.add(found->style, *listener);
        }
        _applyStyle(*found, *listener, owner, delivery, bound);
    }
    if (building > 0 && walk.visitsAll()) {
        table.families.endBuilding(building);
    }
}

void notify(ZelStyleDomain& domain, const std::shared_ptr<NSObject>& styleable,
            const ZelStyleDelivery& delivery, const NotificationPath* above) {
    auto& state = DomainInternals::state(domain);
    if (state.owners.size() > 0 || state.objects.size() > 0) { // else nobody is waited for
        const StylingLock lock;
        deliver(domain, state.owners, styleable, delivery);
        deliver(domain, state.objects, styleable, delivery);
    }
    const ZelStyleable* conforming = styleable ? styleable->asZelStyleable() : nullptr;
    requireNoPrivateLock();
    const auto associated = conforming ? conforming->associatedZelStyleables() : std::nullopt;
    if (!associated) {
        return;
    }
    const NotificationPath path{styleable.get(), above};
    for (const std::shared_ptr<NSObject>& each : *associated) {
        if (each && !path.contains(*each)) { // else a circle, which ends here
            notify(domain, each, delivery, &path);
        }
    }
}

} // namespace

std::shared_ptr<ZelStyle>
DomainInternals::_notifyStyleFor(ZelStyleDomain& domain, const std::shared_ptr<NSObject>& object) {
    return object && object->asZelStyleable() ? domain.styleFor(object) : domain.mainStyle();
}

void ZelStyleDomain::notifyForStyleChangeOf(const std::shared_ptr<NSObject>& styleable,
                                            const ZelStyleDelivery& delivery) {
    const auto self = weak_from_this().lock(); // nil while the domain ends
    // Copies: handlers may clear what the caller passed.
    const std::shared_ptr<NSObject> target = styleable;
    const ZelStyleDelivery kept = delivery;
    notify(*this, target, kept, nullptr);
}

} // namespace zel::inline v1
