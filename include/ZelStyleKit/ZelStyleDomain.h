// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>

namespace zel::inline v1 {

class ZelStyle;
class ZelStyleScheme;

/// Identifiers. Modifiable variables that hold fixed strings.
extern ZEL_EXPORT std::string_view ZelStyleDomainIdentifierDefault;
extern ZEL_EXPORT std::string_view ZelStyleIdentifierMain;

/// The unit in which an application themes a family of objects: schemes by identifier, one of them
/// current, and the listeners that are told when the style that applies to an object changes.
/// Owns: its schemes, for good; the change handlers, keyed by owner in registration order.
/// Refers to: owners and handler objects, weakly; the registry of domains owns the domain.
/// Threads: any, in handlers and destructors as well (docs/threads.md); handlers run on the
/// notifying thread with the styling lock of the process held. Looking up doesn't wait for it.
/// Switching schemes and following belong to the main thread.
/// Failure: unknown identifiers create empty schemes and domains or fall back to the main style. A
/// nil scheme identifier and a nil handler for a live owner raise `ZelInvalidArgument`; a handler's
/// own exception passes through; every lock is free afterwards.
class ZEL_EXPORT ZelStyleDomain : public NSObject {
public:
    ZelStyleDomain();
    /// Stops following, which may make the light scheme current and call handlers; an exception of
    /// theirs ends there. Weak references to the domain read nil by then.
    ~ZelStyleDomain() override;

    /// `defaultDomain`
    static std::shared_ptr<ZelStyleDomain> defaultDomain();
    /// `domainForIdentifier:`. The registered domain, made on the first request; nil is the default
    /// one. Deliberate: "_reset" first empties the registry, one domain after the other in order of
    /// creation, then makes a domain of that name.
    static std::shared_ptr<ZelStyleDomain>
    domainForIdentifier(std::optional<std::string_view> identifier);
    /// `domainForStyleable:`. Nil for an object that is not styleable.
    static std::shared_ptr<ZelStyleDomain>
    domainForStyleable(const std::shared_ptr<NSObject>& styleable);
    /// `setupStyles`. Once per process: makes the default domain's light and dark main styles and
    /// has it follow the system's appearance.
    static void setupStyles();

    /// `init`: an empty domain whose "default" scheme is current.
    std::shared_ptr<NSObject> init() override;
    /// `initWithDomainIdentifier:`
    std::shared_ptr<ZelStyleDomain> initWithDomainIdentifier(std::string_view identifier);

    [[nodiscard]] std::optional<std::string> domainIdentifier() const;
    /// `styleClass`, `setStyleClass:`: for the application to record a class; the library never
    /// uses it.
    [[nodiscard]] std::optional<std::type_index> styleClass() const;
    void setStyleClass(std::optional<std::type_index> styleClass);

    /// `schemeForIdentifier:`. The scheme, made empty on the first request.
    std::shared_ptr<ZelStyleScheme> schemeForIdentifier(std::optional<std::string_view> identifier);
    /// `defaultScheme`, `lightScheme`, `darkScheme`
    std::shared_ptr<ZelStyleScheme> defaultScheme();
    std::shared_ptr<ZelStyleScheme> lightScheme();
    std::shared_ptr<ZelStyleScheme> darkScheme();

    /// `currentScheme`
    [[nodiscard]] std::shared_ptr<ZelStyleScheme> currentScheme() const;
    /// `setCurrentScheme:`. Where it is another one: drops the cached main style and notifies all.
    /// Nil and schemes of other domains are accepted.
    void setCurrentScheme(const std::shared_ptr<ZelStyleScheme>& scheme);

    [[nodiscard]] bool schemeFollowsSystem() const;
    /// `setSchemeFollowsSystem:`. Deliberate: turning following off makes the light scheme current,
    /// never the default one.
    void setSchemeFollowsSystem(bool follows);

    /// `mainStyle`: the current scheme's "main", else the default scheme's; kept until the next
    /// switch. Nil is not remembered.
    [[nodiscard]] std::shared_ptr<ZelStyle> mainStyle();
    /// `styleForIdentifier:`. From the current scheme, else from the default one.
    [[nodiscard]] std::shared_ptr<ZelStyle>
    styleForIdentifier(std::optional<std::string_view> identifier);

    /// `styleFor:`. The style that applies to a styleable: by the nearest custom scheme and style
    /// identifiers up its parents, else the main style.
    [[nodiscard]] std::shared_ptr<ZelStyle> styleFor(const std::shared_ptr<NSObject>& styleable);
    /// `is:equalOrChildOf:`. Whether the object is the other or reaches it through its parents.
    [[nodiscard]] static bool isEqualOrChildOf(const std::shared_ptr<NSObject>& object,
                                               const std::shared_ptr<NSObject>& other);

    /// `registerChangeHandler:withOwner:`. Keeps the handler for as long as the owner lives and
    /// calls it at once with event 0, after any delivery in progress. Nil owner: nothing.
    void registerChangeHandler(ZelStyleChangeHandler handler,
                               const std::shared_ptr<NSObject>& withOwner);
    /// `unregisterChangeHandlersWithOwner:`. The handlers, and what they captured, are destroyed
    /// here; where any of them runs, when the outermost such call has returned. Waits where another
    /// thread delivers in this domain, so that none of them runs any more afterwards.
    void unregisterChangeHandlersWithOwner(const std::shared_ptr<NSObject>& owner);
    /// `registerChangeHandler:`. The object must answer `style:changedWithEvent:`, which is called
    /// at once with event 0, also when it was registered before.
    void registerChangeHandler(const std::shared_ptr<NSObject>& object);
    /// `unregisterChangeHandler:`
    void unregisterChangeHandler(const std::shared_ptr<NSObject>& object);

    /// `notifyForStyleChangeOf:withEvent:force:forStyleOnly:`. Resolves the style of every listener
    /// (nil) or of those at and below the styleable, and calls those to whom it is new or whom the
    /// delivery forces: first the owners of handlers, then the handler objects. A listener removed
    /// meanwhile is not called any more; one added while its kind is being served is called by its
    /// registration alone. A style that was found for a listener may be held until all are called.
    /// Deliberate: an unforced change reaches only an owner's first handler.
    void notifyForStyleChangeOf(const std::shared_ptr<NSObject>& styleable,
                                const ZelStyleDelivery& delivery);

private:
    friend struct DomainInternals;
    struct State;
    const std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
