// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Color.h"
#include "tests/model/plain/Object.h"

#include <set>

namespace plain {

class Provider;
class Scheme;

/// Values, their merging, seeds, observers and updates.
class Style : public Object {
public:
    using UpdateObserver = std::function<void(const Ref<Object>&, const Ref<Style>&, bool)>;
    using Changes = std::function<bool(const Ref<Style>&)>;
    using InheritedChanges = std::function<void(const Ref<Style>&, const Ref<Style>&)>;

    Style();
    ~Style() override;
    Ref<Style> initWithIdentifier(Id identifier, const Ref<Scheme>& scheme,
                                  const Ref<Style>& parentStyle);
    static Ref<Style> forStyleable(const Ref<Object>& styleable);

    bool isChildOf(const Ref<Style>& other) const;
    Ref<Domain> domain() const { return domain_.lock(); }
    void setDomain(const Ref<Domain>& domain) { domain_ = domain; }
    Ref<Scheme> scheme() const { return scheme_.lock(); }
    void setScheme(const Ref<Scheme>& scheme) { scheme_ = scheme; }
    Ref<Style> parentStyle() const { return parent_.lock(); }
    void setParentStyle(const Ref<Style>& parent) { parent_ = parent; }
    Id identifier() const { return identifier_; }
    void setIdentifier(Id identifier) { identifier_ = std::move(identifier); }
    std::uint64_t seed() const { return counter_ + (parentStyle() ? parentStyle()->seed() : 0); }

    std::optional<Value> valueForAttribute(const Id& key) const;
    std::optional<Value> effectiveValueForAttribute(const Id& key);
    Ref<const Values> effectiveValues();
    void setValue(const std::optional<Value>& value, const Id& forAttribute);
    std::optional<Color> color(const std::string& key); // as the typed accessors read it
    std::optional<Color> labelColor() { return color("labelColor"); }
    bool isDarkStyle() { return type() == 2; }
    bool isLightStyle() { return type() == 1; }
    bool isCustomStyle() { return type() == 0; }

    void updateStyleWithChanges(const Changes& changes);
    Ref<Style> inheritedStyleWithChanges(InheritedChanges changes, Id identifier,
                                         const Ref<Scheme>& scheme);
    void addStyleUpdateObserver(UpdateObserver observer, const Ref<Object>& withOwner,
                                bool initialCall);
    void removeStyleUpdateObserverWithOwner(const Ref<Object>& owner);

    static void addDefaultValueProvider(const Ref<Provider>& provider);
    static void removeDefaultValueProvider(const Ref<Provider>& provider);

    void forgetTheDead();
    const std::uint64_t serial;

private:
    struct Observation {
        Weak<Object> owner;
        Ref<UpdateObserver> observer;
    };
    Ref<Style> self() { return std::static_pointer_cast<Style>(shared_from_this()); }
    std::uint64_t type();
    void callObservers();

    Weak<Domain> domain_;
    Weak<Scheme> scheme_;
    Weak<Style> parent_;
    Id identifier_;
    std::uint64_t counter_ = 0;
    Values values_;
    Ref<const Values> merged_;
    std::vector<Observation> observations_;
    std::uint64_t mutations_ = 0; // of the observers
};

class Provider : public Object {
public:
    using ProviderBlock = std::function<void(const Ref<Style>&, const Ref<Scheme>&)>;
    using ApplyBlock = std::function<void(const Ref<Style>&, const Ref<Scheme>&,
                                          const Ref<Provider>&, const Ref<Provider>&)>;

    static Ref<Provider>
    providerWithIdentifier(const std::string& identifier,
                           const std::optional<std::vector<std::string>>& afterRunning,
                           ProviderBlock usingBlock);
    /// Runs the registered providers over a new root.
    static void setUpDefaultValues(const Ref<Style>& style, const Ref<Scheme>& scheme);
    Id identifier() const { return identifier_; }
    void setWillApplyBlock(ApplyBlock block) { willApply_ = std::move(block); }
    void setDidApplyBlock(ApplyBlock block) { didApply_ = std::move(block); }

private:
    static void run(const Ref<Provider>& provider, const Ref<Style>& style,
                    const Ref<Scheme>& scheme);

    std::string identifier_;
    std::set<std::string> required_;
    ProviderBlock block_;
    ApplyBlock willApply_, didApply_;
};

/// What the two providers of every process write.
void provideBase(Style& style, const Ref<Scheme>& scheme);
void provideMain(Style& style, const Ref<Scheme>& scheme);

inline std::uint64_t serialOf(const Ref<Style>& style) {
    return style ? style->serial : 0;
}

} // namespace plain
