// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

#include <cmath>
#include <utility>

namespace zeltest {

template <class Kit>
void Player<Kit>::put(const Ref<Object>& owner) {
    if (const auto* controls = dynamic_cast<const Controls<Kit>*>(owner.get())) {
        put(controls->number);
    } else {
        put(std::dynamic_pointer_cast<Style>(owner));
    }
}

template <class Kit>
void Player<Kit>::put(const Ref<Style>& style) {
    const auto serial = Kit::serial(style);
    putStyle(serial);
    if (style && seenSerials_.insert(serial).second) {
        seen_.emplace_back(style);
        if (keeps_) {
            kept_.push_back(style);
        }
    }
}

template <class Kit>
void Player<Kit>::keepStyles() {
    if (!mayKeep_ || silent_ || std::exchange(keeps_, true)) {
        return;
    }
    for (const auto& each : seen_) {
        if (auto held = each.lock()) {
            kept_.push_back(std::move(held));
        }
    }
}

/// Components to the ninth digit: the two sides may compute them differently.
template <class Kit>
void Player<Kit>::put(const typename Kit::Color& color) {
    std::uint64_t sum = 17;
    for (const double part : Kit::parts(color)) {
        sum = sum * 1099511628211U + static_cast<std::uint64_t>(std::llround(part * 1e9));
    }
    put(sum);
}

template <class Kit>
void Player<Kit>::put(const std::optional<typename Kit::Color>& color) {
    color ? put(*color) : put(std::int64_t{-1});
}

template <class Kit>
void Player<Kit>::put(const std::optional<typename Kit::Value>& value) {
    if (!value) {
        put(std::int64_t{-1});
    } else if (const auto* color = Kit::color(*value)) {
        put(*color);
    } else if (const auto number = Kit::number(*value)) {
        put(std::uint64_t{1000} + *number);
    } else if (const auto* text = Kit::text(*value)) {
        put(std::optional(*text));
    } else {
        put(std::int64_t{-2});
    }
}

template <class Kit>
void Player<Kit>::putModes(const typename Kit::Manager& manager) {
    for (const auto& mode : manager.modes()) {
        note(mode, mode->manager(), mode->identifier(), mode->name(), mode->rank(), mode->active());
    }
    put(Kit::chosen(manager));
}

template <class Kit>
void Player<Kit>::putState() {
    put(mark("STATE"));
    for (const auto& each : styles) {
        put(each);
        if (each) {
            note(each->seed(), each->identifier(), each->parentStyle(), each->scheme(),
                 each->domain());
            for (const char* key : {"styleType", "labelColor", "mine", "accentColor", "indigoColor",
                                    "grayColor3", ""}) {
                put(each->valueForAttribute(key));
            }
        }
    }
    for (const Thing& each : things) {
        putLife(each.object);
        if (each) {
            putStyle(Kit::last(*each.object));
            note(each.object->customZelStyleIdentifier(),
                 each.object->customZelStyleSchemeIdentifier());
            putLife(parentOf(*each.object));
        }
    }
    for (const Thing& each : crowd) {
        putStyle(Kit::last(*each.object));
    }
    for (const auto& each : schemes) {
        put(each);
        if (each) {
            note(each->identifier(), each->domain());
            for (const auto& [identifier, style] : each->stylesByIdentifier()) {
                note(std::optional(identifier), style);
            }
        }
    }
    for (const auto& each : domains) {
        put(each);
        if (each) {
            note(each->domainIdentifier(), each->currentScheme(), each->schemeFollowsSystem());
        }
    }
    for (const auto& each : managers) {
        if (each) {
            putModes(*each);
        }
    }
    putModes(*Kit::Manager::sharedStyleManager());
    put(Kit::tracker().currentAppearanceType());
    putLives();
    std::uint64_t living = 0; // styles; wraps
    for (std::size_t i = 0; i < seen_.size(); ++i) {
        living = seen_[i].expired() ? living : living * 31 + i + 1;
    }
    put(living);
}

template <class Kit>
void Player<Kit>::putReads() {
    for (const auto& each : styles) {
        if (each) {
            put(mark("VALUES"));
            const auto values = each->effectiveValues();
            for (const auto& [key, value] : *values) {
                note(std::optional<std::string>(key), std::optional<typename Kit::Value>(value));
            }
        }
    }
    for (const auto& each : domains) {
        if (each) {
            put(each->mainStyle());
            for (const Thing& thing : things) {
                if (thing && thing.object->asZelStyleable()) {
                    put(each->styleFor(thing.object));
                }
            }
        }
    }
}

template <class Kit>
void Player<Kit>::attempt(const Operation& operation) {
    try {
        ++played;
        commands<Kit>()[operation.command].run(*this, operation.arguments);
    } catch (const Raised& raised) {
        Kit::noteRaise();
        note(mark("RAISED"), std::uint64_t{raised.number});
    } catch (const typename Kit::InvalidArgument&) {
        note(mark("RAISED"), std::int64_t{-1});
    } catch (const typename Kit::EnumerationMutation&) {
        note(mark("RAISED"), std::int64_t{-2});
    } catch (const std::invalid_argument&) {
        note(mark("RAISED"), std::int64_t{-3});
    }
}

template <class Kit>
void Player<Kit>::step(const Operation& operation) {
    constexpr unsigned operationsOfCallbacks = 16;
    left_ = operationsOfCallbacks;
    put(mark("step"));
    attempt(operation);
    keeps_ = false;
    std::exchange(kept_, {}).clear(); // ends may call back
    putState();
}

template <class Kit>
void Player<Kit>::perform(unsigned program) {
    constexpr unsigned deepest = 4;
    if (silent_ || depth_ == deepest || program == noProgram) {
        return;
    }
    const bool goesOn = program % 2 == 1; // after what its operations raise
    const auto& operations = script_.programs[program % Script::programCount];
    struct Depth {
        unsigned& depth;
        explicit Depth(unsigned& value) : depth(++value) {}
        ~Depth() { --depth; }
    } const guard(depth_);
    for (const Operation& each : operations) {
        if (left_ == 0) {
            return;
        }
        --left_;
        put(mark("nested"));
        if (goesOn) {
            attempt(each);
        } else {
            ++played;
            commands<Kit>()[each.command].run(*this, each.arguments);
        }
    }
}

template <class Kit>
void Player<Kit>::finish() {
    silent_ = true;
    styles.fill(nullptr);
    things.fill({});
    crowd.clear();
    schemes.fill(nullptr);
    domains.fill(nullptr);
    managers.fill(nullptr);
    modes.fill(nullptr);
    for (const auto& each : added) {
        Kit::Style::removeDefaultValueProvider(each);
    }
    added.clear();
    providers.fill(nullptr);
}

} // namespace zeltest
