// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Script.h"
#include "tests/model/Trace.h"

#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <unordered_set>

namespace zeltest {

/// What a script raises in the middle of things.
struct Raised : std::runtime_error {
    explicit Raised(unsigned which) : std::runtime_error("raised"), number(which) {}
    unsigned number;
};

/// For what does nothing when it is called.
constexpr unsigned noProgram = ~0U;

/// What the player sets on the objects that it makes, whatever their class.
template <class Kit>
struct Controls {
    std::int64_t number = 0; // of its making, in the script
    std::function<void(const std::shared_ptr<typename Kit::Style>&, std::uint64_t)> onStyle;
    std::function<void(bool)> onType;
    bool observesType = false, observesPosts = false;
    // Answered by an object of the player's own class.
    std::optional<std::string> domainIdentifier;
    std::weak_ptr<typename Kit::Object> parent;
    std::optional<std::vector<std::weak_ptr<typename Kit::Object>>> associated;
};

/// An object that tells the player of what it hears.
template <class Kit, class Base>
class Listening : public Kit::template Witness<Base>, public Controls<Kit> {
    void styleChangedWithEvent(const std::shared_ptr<typename Kit::Style>& style,
                               typename Kit::Event event) final {
        const auto held = this->onStyle;
        held(style, event);
    }
    void typeChanges(bool isPrior) final { this->onType(isPrior); }
};

/// A styleable object whose answers the script decides. It owns none of them, so that whatever a
/// script makes ends with it.
template <class Kit>
class Answering : public Listening<Kit, typename Kit::Styleable> {
    std::optional<std::string> domainIdentifierOfZelStyleable() const final {
        return this->domainIdentifier;
    }
    std::shared_ptr<typename Kit::Object> parentZelStyleable() const final {
        return this->parent.lock();
    }
    std::optional<std::vector<std::shared_ptr<typename Kit::Object>>>
    associatedZelStyleables() const final {
        if (!this->associated) {
            return std::nullopt;
        }
        std::vector<std::shared_ptr<typename Kit::Object>> alive;
        for (const auto& each : *this->associated) {
            if (auto held = each.lock()) {
                alive.push_back(std::move(held));
            }
        }
        return alive;
    }
};

/// Plays a script on one side and writes down what can be observed.
template <class Kit>
class Player : public Trace {
public:
    template <class T>
    using Ref = std::shared_ptr<T>;
    using Object = typename Kit::Object;
    using Style = typename Kit::Style;

    /// An object and what it is besides.
    struct Thing {
        Ref<Object> object;
        Controls<Kit>* controls = nullptr;
        Ref<typename Kit::View> view;
        Ref<typename Kit::Controller> controller;
        explicit operator bool() const { return object != nullptr; }
    };

    /// `keeps` whether styles are kept for the time of a step, see `keepStyles`.
    Player(const Script& script, bool keeps) : script_(script), mayKeep_(keeps) {}
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player() { finish(); }

    std::uint64_t played = 0; // operations, those of callbacks included
    std::array<Ref<Style>, 6> styles;
    std::array<Thing, 7> things;
    std::vector<Thing> crowd; // many listeners at once
    std::array<Ref<typename Kit::Scheme>, 4> schemes;
    std::array<Ref<typename Kit::Domain>, 3> domains;
    std::array<Ref<typename Kit::Provider>, 4> providers;
    std::array<Ref<typename Kit::Manager>, 2> managers;
    std::array<Ref<typename Kit::Mode>, 4> modes;
    std::vector<Ref<typename Kit::Provider>> added; // to the registry
    std::int64_t made = 0; // objects, handlers, observers: each gets a number
    bool draining = false;

    void step(const Operation& operation);
    /// What a callback does: its program, as long as there is anything left to spend on the step.
    void perform(unsigned program);
    /// Lets no style end before the step does. For when a listener is called: whether a walk holds
    /// a style that it has found for an earlier listener is its own affair.
    void keepStyles();
    /// Lets everything go, silently.
    void finish();

    /// Writes down one after the other.
    template <class... Seen>
    void note(const Seen&... seen) {
        (put(seen), ...);
    }
    using Trace::put;
    /// Whom a callback is for: an object that the player made, by its number, or a style.
    void put(const Ref<Object>& owner);
    void put(const Ref<Style>& style);
    void put(const typename Kit::Color& color);
    void put(const std::optional<typename Kit::Color>& color);
    void put(const std::optional<typename Kit::Value>& value);
    void putState();
    /// Everything that looking at changes, too.
    void putReads();

private:
    void attempt(const Operation& operation);
    void putModes(const typename Kit::Manager& manager);

    const Script& script_;
    const bool mayKeep_;
    std::unordered_set<std::uint64_t> seenSerials_;
    std::vector<std::weak_ptr<Style>> seen_; // in the order in which they were first seen
    std::vector<Ref<Style>> kept_;
    unsigned depth_ = 0, left_ = 0;
    bool keeps_ = false;
    bool silent_ = false;
};

} // namespace zeltest
