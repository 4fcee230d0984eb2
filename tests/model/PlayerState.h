// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/Commands.h"

#include <cmath>
#include <utility>

namespace zeltest {

template <class Kit>
void Player<Kit>::put(Mark mark, const Ref<Object>& owner) {
    trace.put(mark);
    if (const auto* controls = dynamic_cast<const Controls<Kit>*>(owner.get())) {
        trace.put(controls->number);
    } else {
        put(std::dynamic_pointer_cast<Style>(owner));
    }
}

template <class Kit>
void Player<Kit>::put(const Ref<Style>& style) {
    const auto serial = Kit::serial(style);
    trace.style(serial);
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
    trace.put(sum);
}

template <class Kit>
void Player<Kit>::put(const std::optional<typename Kit::Value>& value) {
    if (!value) {
        trace.put(std::int64_t{-1});
    } else if (const auto* color = Kit::color(*value)) {
        put(*color);
    } else if (const auto number = Kit::number(*value)) {
        trace.put(std::uint64_t{1000} + *number);
    } else if (const auto* text = Kit::text(*value)) {
        trace.put(std::optional(*text));
    } else {
        trace.put(std::int64_t{-2});
    }
}

template <class Kit>
void Player<Kit>::putStyle(Style& style) {
    trace.put(style.seed());
    trace.put(style.identifier());
    put(style.parentStyle());
    trace.object(style.scheme());
    trace.object(style.domain());
    for (const char* key :
         {"styleType", "labelColor", "mine", "accentColor", "indigoColor", "grayColor3", ""}) {
        put(style.valueForAttribute(key));
    }
}

template <class Kit>
void Player<Kit>::putScheme(const Ref<typename Kit::Scheme>& scheme) {
    trace.object(scheme);
    if (scheme) {
        trace.put(scheme->identifier());
        trace.object(scheme->domain());
        for (const auto& [identifier, style] : scheme->stylesByIdentifier()) {
            trace.put(std::optional(identifier));
            put(style);
        }
    }
}

template <class Kit>
void Player<Kit>::putState() {
    trace.put(Mark::State);
    for (const auto& each : styles) {
        put(each);
        if (each) {
            putStyle(*each);
        }
    }
    for (const Thing& each : things) {
        trace.object(each.object);
        if (each.object) {
            trace.style(Kit::last(*each.object));
            trace.put(each.object->customZelStyleIdentifier());
            trace.put(each.object->customZelStyleSchemeIdentifier());
            trace.object(Kit::parentOf(*each.object));
        }
    }
    for (const Thing& each : crowd) {
        trace.style(Kit::last(*each.object));
    }
    for (const auto& each : schemes) {
        putScheme(each);
    }
    for (const auto& each : domains) {
        trace.object(each);
        if (each) {
            trace.put(each->domainIdentifier());
            trace.object(each->currentScheme());
            trace.put(each->schemeFollowsSystem());
        }
    }
    const auto putModes = [&](const auto& manager) {
        for (const auto& mode : manager->modes()) {
            trace.object(mode);
            trace.object(mode->manager());
            trace.put(mode->identifier());
            trace.put(mode->name());
            trace.put(static_cast<std::uint64_t>(mode->rank()));
            trace.put(mode->active());
        }
        trace.put(Kit::chosen(*manager));
    };
    for (const auto& each : managers) {
        if (each) {
            putModes(each);
        }
    }
    putModes(Kit::Manager::sharedStyleManager());
    trace.put(Kit::tracker().currentAppearanceType());
    trace.lives();
    std::uint64_t living = 0; // styles; wraps
    for (std::size_t i = 0; i < seen_.size(); ++i) {
        living = seen_[i].expired() ? living : living * 31 + i + 1;
    }
    trace.put(living);
}

template <class Kit>
void Player<Kit>::putReads() {
    for (const auto& each : styles) {
        if (each) {
            trace.put(Mark::Values);
            for (const auto& [key, value] : Kit::entries(each->effectiveValues())) {
                trace.put(std::optional<std::string>(key));
                put(std::optional<typename Kit::Value>(value));
            }
        }
    }
    for (const auto& each : domains) {
        if (each) {
            put(each->mainStyle());
            for (const Thing& thing : things) {
                if (thing.object && Kit::isStyleable(*thing.object)) {
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
        trace.put(Mark::Raised);
        trace.put(std::uint64_t{raised.number});
    } catch (const typename Kit::InvalidArgument&) {
        trace.put(Mark::Raised);
        trace.put(std::int64_t{-1});
    } catch (const typename Kit::EnumerationMutation&) {
        trace.put(Mark::Raised);
        trace.put(std::int64_t{-2});
    } catch (const std::invalid_argument&) {
        trace.put(Mark::Raised);
        trace.put(std::int64_t{-3});
    }
}

template <class Kit>
void Player<Kit>::step(const Operation& operation) {
    constexpr unsigned operationsOfCallbacks = 16;
    left_ = operationsOfCallbacks;
    trace.put(Mark::Step);
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
        trace.put(Mark::Nested);
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
