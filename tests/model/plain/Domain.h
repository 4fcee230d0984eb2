// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/Style.h"

namespace plain {

/// Styles by identifier.
class Scheme : public Object {
public:
    Ref<Scheme> initWithIdentifier(Id identifier, const Ref<Domain>& domain);
    Id identifier() const { return identifier_; }
    Ref<Domain> domain() const { return domain_.lock(); }
    void addStyle(const Ref<Style>& style);
    void removeStyle(const Ref<Style>& style);
    Ref<Style> styleForIdentifier(const Id& identifier) const;
    const std::map<std::string, Ref<Style>>& stylesByIdentifier() const { return styles_; }
    void setStylesByIdentifier(std::map<std::string, Ref<Style>> styles);

private:
    Weak<Domain> domain_;
    Id identifier_;
    std::map<std::string, Ref<Style>> styles_;
};

struct Delivery {
    std::uint64_t withEvent = 1;
    bool force = false;
    Ref<Style> forStyleOnly = nullptr;
};

/// Schemes, the current one, the listeners, and who is told of what.
class Domain : public Object {
public:
    using Handler = std::function<void(const Ref<Object>&, const Ref<Style>&, std::uint64_t)>;

    Domain();
    ~Domain() override;
    static Ref<Domain> domainForIdentifier(const Id& identifier);
    static Ref<Domain> domainForStyleable(const Ref<Object>& styleable);
    static void setupStyles();
    Ref<Domain> initWithDomainIdentifier(const std::string& identifier);

    Id domainIdentifier() const { return identifier_; }
    Ref<Scheme> schemeForIdentifier(const Id& identifier);
    Ref<Scheme> currentScheme() const { return current_; }
    void setCurrentScheme(const Ref<Scheme>& scheme);
    bool schemeFollowsSystem() const { return follows_; }
    void setSchemeFollowsSystem(bool follows);
    Ref<Style> mainStyle();
    Ref<Style> styleForIdentifier(const Id& identifier);
    Ref<Style> styleFor(const Ref<Object>& styleable);
    static bool isEqualOrChildOf(const Ref<Object>& object, const Ref<Object>& other);

    void registerChangeHandler(Handler handler, const Ref<Object>& withOwner);
    void unregisterChangeHandlersWithOwner(const Ref<Object>& owner);
    void registerChangeHandler(const Ref<Object>& object);
    void unregisterChangeHandler(const Ref<Object>& object);
    void notifyForStyleChangeOf(const Ref<Object>& styleable, const Delivery& delivery);

    void forgetTheDead();

private:
    struct Listener;
    using Listeners = std::vector<Ref<Listener>>;
    /// An owner's handlers, from its first registration until they are removed, all at once. While
    /// one is called, none of them ends.
    struct Group {
        int calls = 0;
        Listeners removed;
    };
    /// One handler of an owner, or an object that is a handler itself. Replaced, never changed; a
    /// walk asks whether it still stands in its table.
    struct Listener {
        Weak<Object> owner;
        const Object* address; // of the owner, for after its end
        Handler handler;       // none: the owner's own operation
        Ref<Group> group;      // of a handler
        bool removed = false;
    };
    class Calling;
    using Path = std::vector<const Object*>;

    void updateFromSystemAppearance();
    Ref<Style> notifyStyleFor(const Ref<Object>& object);
    static bool applies(const Ref<Style>& style, const Object& owner, const Delivery& delivery);
    static void call(const Listener& listener, const Ref<Object>& owner, const Ref<Style>& style,
                     std::uint64_t event);
    void walk(const Listeners& listeners, const Ref<Object>& styleable, const Delivery& delivery);
    void notify(const Ref<Object>& styleable, const Delivery& delivery, Path& path);
    static void remove(Listeners& listeners, const Object* owner);

    Id identifier_;
    std::map<std::string, Ref<Scheme>> schemes_;
    Ref<Scheme> current_;
    Ref<Style> main_;
    bool follows_ = false;
    Listeners owners_; // an owner's handlers stand together, owners in order of registration
    Listeners objects_;
};

} // namespace plain
