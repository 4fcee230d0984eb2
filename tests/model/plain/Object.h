// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
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

/// A view: owns its subviews.
class View : public Object {
public:
    ~View() override;
    bool isStyleable() const override { return true; }
    Id domainIdentifierOfZelStyleable() const override { return "default"; }
    Ref<Object> parentZelStyleable() const override { return parent_.lock(); }
    void addSubview(const Ref<View>& view);
    void removeFromSuperview();

private:
    Weak<View> parent_;
    std::vector<Ref<View>> children_;
};

/// A controller: owns its child controllers, and its view once that is loaded.
class Controller : public Object {
public:
    bool isStyleable() const override { return true; }
    Id domainIdentifierOfZelStyleable() const override { return "default"; }
    Ref<Object> parentZelStyleable() const override { return parent_.lock(); }
    std::optional<std::vector<Ref<Object>>> associatedZelStyleables() const override;
    void addChildViewController(const Ref<Controller>& child);
    void removeFromParentViewController();
    void setView(Ref<View> view) { view_ = std::move(view); }
    bool isViewLoaded() const { return view_ != nullptr; }

private:
    Weak<Controller> parent_;
    std::vector<Ref<Controller>> children_;
    Ref<View> view_;
};

} // namespace plain
