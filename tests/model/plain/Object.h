// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace plain {

class Domain;
class Style;

template <class T>
using Ref = std::shared_ptr<T>;
template <class T>
using Weak = std::weak_ptr<T>;
using Id = std::optional<std::string>;

struct InvalidArgument : std::runtime_error {
    using std::runtime_error::runtime_error;
};
struct EnumerationMutation : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Any object: the styling state attached to it, and what it answers.
class Object : public std::enable_shared_from_this<Object> {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object(); // every table forgets it

    virtual bool isStyleable() const { return false; }
    const Object* asZelStyleable() const { return isStyleable() ? this : nullptr; }
    virtual Id domainIdentifierOfZelStyleable() const { return {}; }
    virtual Ref<Object> parentZelStyleable() const { return nullptr; }
    virtual std::optional<std::vector<Ref<Object>>> associatedZelStyleables() const { return {}; }
    virtual void styleChangedWithEvent(const Ref<Style>& /*style*/, std::uint64_t /*event*/) {}
    virtual void typeChanges(bool /*isPrior*/) {} // "currentAppearanceType", before and after

    bool registerStyleableChangeHandler(
        std::function<void(const Ref<Object>&, const Ref<Style>&, std::uint64_t)> handler);
    bool unregisterStyleableChangeHandlers();
    Id customZelStyleIdentifier() const { return styleIdentifier_; }
    void setCustomZelStyleIdentifier(Id identifier);
    Id customZelStyleSchemeIdentifier() const { return schemeIdentifier_; }
    void setCustomZelStyleSchemeIdentifier(Id identifier);

    std::uint64_t last = 0; // serial of the style delivered last

private:
    void notify();
    Id styleIdentifier_, schemeIdentifier_;
};

/// A node of a tree of its class, as views and controllers are: owns those below it.
template <class Node>
class TreeNode : public Object {
public:
    bool isStyleable() const final { return true; }
    Id domainIdentifierOfZelStyleable() const final { return "default"; }
    Ref<Object> parentZelStyleable() const final { return parent_.lock(); }

protected:
    void add(const Ref<Node>& child) {
        Ref<Object> each = shared_from_this();
        for (; each; each = each->parentZelStyleable()) {
            if (each == child) {
                throw std::invalid_argument("below itself");
            }
        }
        child->leave();
        children_.push_back(child);
        child->parent_ = self();
    }
    void leave() {
        if (const auto old = std::exchange(parent_, {}).lock()) {
            std::erase(old->children_, self());
        }
    }

private:
    Ref<Node> self() { return std::static_pointer_cast<Node>(shared_from_this()); }

    Weak<Node> parent_;
    std::vector<Ref<Node>> children_;
};

class View : public TreeNode<View> {
public:
    void addSubview(const Ref<View>& view) { add(view); }
    void removeFromSuperview() { leave(); }
};

/// A controller: owns its view, too, once that is loaded.
class Controller : public TreeNode<Controller> {
public:
    std::optional<std::vector<Ref<Object>>> associatedZelStyleables() const override {
        return view_ ? std::optional(std::vector<Ref<Object>>{view_}) : std::nullopt;
    }
    void addChildViewController(const Ref<Controller>& child) { add(child); }
    void removeFromParentViewController() { leave(); }
    void setView(Ref<View> view) { view_ = std::move(view); }

private:
    Ref<View> view_;
};

} // namespace plain
