// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/ZelAttributeValue.h>
#include <ZelStyleKit/ZelStyleAttributes.h>
#include <ZelStyleKit/ZelStyleBasePalette.h>
#include <ZelStyleKit/ZelStyleSemanticColors.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zel::inline v1 {

class ZelStyleDefaultValueProvider;
class ZelStyleDomain;
class ZelStyleScheme;

/// A named set of attribute values with an optional parent whose values it inherits. The predefined
/// attributes have typed accessors, which the two classes of colours declare.
/// Owns: its own values, the cache of merged values, its update observers (keyed by owner, which it
/// holds weakly).
/// Refers to: parent style, scheme and domain, weakly; a scheme owns the style.
/// Threads: any, in handlers and destructors as well; providers are added and removed on the main
/// thread, while nobody makes a root style (docs/threads.md). A read of a predefined attribute
/// takes no lock unless the merged values were invalidated. Updates, and what adds observers, hold
/// the styling lock of the process while they call back: one update or delivery runs at a time.
/// Failure: a nil key to write to raises `ZelInvalidArgument`; changing the observers while an
/// update walks them raises `ZelEnumerationMutation`; every lock is free afterwards.
class ZEL_EXPORT ZelStyle : public NSObject,
                            public ZelStyleBasePalette,
                            public ZelStyleSemanticColors {
public:
    /// Called with (owner, the style that changed, whether this is the call made on adding).
    using UpdateObserver =
        std::function<void(const std::shared_ptr<NSObject>& owner,
                           const std::shared_ptr<ZelStyle>& style, bool initial)>;
    /// Changes the style; true accepts the update, false cancels it (what it wrote stays written).
    using Changes = std::function<bool(const std::shared_ptr<ZelStyle>& style)>;
    /// Computes a child's own values from its parent's; the parent may be nil by then.
    using InheritedChanges = std::function<void(const std::shared_ptr<ZelStyle>& parent,
                                                const std::shared_ptr<ZelStyle>& child)>;
    using Providers = std::vector<std::shared_ptr<ZelStyleDefaultValueProvider>>;

    ZelStyle();
    ~ZelStyle() override;

    /// `initWithIdentifier:scheme:parentStyle:` and `initWithIdentifier:scheme:`. Without a parent
    /// the style is filled by the default value providers. The style isn't added to the scheme; its
    /// `scheme` stays nil.
    std::shared_ptr<ZelStyle>
    initWithIdentifier(std::optional<std::string_view> identifier,
                       const std::shared_ptr<ZelStyleScheme>& scheme,
                       const std::shared_ptr<ZelStyle>& parentStyle = nullptr);

    /// `for:`. The style that applies to a styleable in its own domain; nil gives the default
    /// domain's main style.
    static std::shared_ptr<ZelStyle> forStyleable(const std::shared_ptr<NSObject>& styleable);

    /// `isChildOf:`. Whether the argument is a strict ancestor, by identity.
    [[nodiscard]] bool isChildOf(const std::shared_ptr<ZelStyle>& style) const;

    // Plain accessors: setting one drops no values, is no update, and re-keys the style nowhere.

    /// `domain`, `setDomain:`
    [[nodiscard]] std::shared_ptr<ZelStyleDomain> domain() const;
    void setDomain(const std::shared_ptr<ZelStyleDomain>& domain);
    /// `scheme`, `setScheme:`
    [[nodiscard]] std::shared_ptr<ZelStyleScheme> scheme() const;
    void setScheme(const std::shared_ptr<ZelStyleScheme>& scheme);
    /// `parentStyle`, `setParentStyle:`. Neither the style itself nor one that inherits from it.
    [[nodiscard]] std::shared_ptr<ZelStyle> parentStyle() const;
    void setParentStyle(const std::shared_ptr<ZelStyle>& parentStyle);
    /// `identifier`, `setIdentifier:`
    [[nodiscard]] std::optional<std::string> identifier() const;
    void setIdentifier(std::optional<std::string_view> identifier);

    /// `seed`. Accepted updates of this style and of every ancestor, unsigned 64-bit, wraps.
    [[nodiscard]] std::uint64_t seed() const;

    /// Never nil, never the same for two styles of a process.
    [[nodiscard]] ZelStyleToken token() const noexcept;

    /// `valueForAttribute:`. The style's own entry only: a value, the null marker, or absent. Keys
    /// to read by are passed by reference, since copying one costs as much as a read.
    [[nodiscard]] std::optional<ZelAttributeValue>
    valueForAttribute(const std::optional<std::string_view>& key) const;
    /// `effectiveValueForAttribute:`. Own or inherited; the null marker reads as absent.
    [[nodiscard]] std::optional<ZelAttributeValue>
    effectiveValueForAttribute(const std::optional<std::string_view>& key) const;
    /// `effectiveValues`. The merged values of the style and its ancestors, an immutable snapshot;
    /// the same one until something drops the cache. A root's holds its null markers.
    [[nodiscard]] std::shared_ptr<const ZelAttributeDictionary> effectiveValues() const;
    /// `setValue:forAttribute:`. Stores the own value (nil as the null marker) and drops the
    /// style's merged values. Tells nobody and touches no child: that is an update's work.
    void setValue(const std::optional<ZelAttributeValue>& value,
                  std::optional<std::string_view> forAttribute);

    /// `updateStyleWithChanges:`. Runs the changes, increments the style's counter, invalidates its
    /// merged values, calls its observers, then has its domain deliver it to all it applies to.
    void updateStyleWithChanges(const Changes& changes);
    /// `inheritedStyleWithChanges:identifier:scheme:`. Answers the scheme's style of that
    /// identifier where there is one, even the receiver; else makes a child that follows the
    /// receiver's updates. The caller or the scheme keeps the child alive.
    std::shared_ptr<ZelStyle>
    inheritedStyleWithChanges(InheritedChanges changes, std::optional<std::string_view> identifier,
                              const std::shared_ptr<ZelStyleScheme>& scheme);
    /// `addStyleUpdateObserver:withOwner:initialCall:`. One observer for each owner: a second
    /// replaces the first. Called with the styling lock held. Nil observer or owner: nothing.
    void addStyleUpdateObserver(UpdateObserver observer, const std::shared_ptr<NSObject>& withOwner,
                                bool initialCall);
    /// `removeStyleUpdateObserverWithOwner:`
    void removeStyleUpdateObserverWithOwner(const std::shared_ptr<NSObject>& owner);

    /// `addDefaultValueProvider:`. Appends; deliberate: every one named "main" goes to the front.
    /// Nil raises `ZelInvalidArgument`.
    static void
    addDefaultValueProvider(const std::shared_ptr<ZelStyleDefaultValueProvider>& provider);
    /// `removeDefaultValueProvider:`. Removes every occurrence of that very provider.
    static void
    removeDefaultValueProvider(const std::shared_ptr<ZelStyleDefaultValueProvider>& provider);

    /// The registry of providers as it is now, front to back, as a copy: to find one by its
    /// identifier, a built-in one as well, and remove it or set hooks on it.
    [[nodiscard]] static Providers defaultValueProviders();

    /// `load`: registers the built-in providers. Runs by itself before the registry is first used;
    /// called again, it registers them again.
    static void load();
    /// `loadBase`: registers the provider "base".
    static void loadBase();
    /// `loadMain`: registers the provider "main", which runs after "base".
    static void loadMain();

private:
    friend struct ZelStyleInternals;
    struct State;
    const std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
