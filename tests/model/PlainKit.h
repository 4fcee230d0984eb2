// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/model/plain/World.h"

namespace zeltest {

/// The plain model as the player uses it.
struct PlainKit {
    using Object = plain::Object;
    using Style = plain::Style;
    using Scheme = plain::Scheme;
    using Domain = plain::Domain;
    using Provider = plain::Provider;
    using Manager = plain::Manager;
    using Mode = plain::Mode;
    using View = plain::View;
    using Controller = plain::Controller;
    using Event = std::uint64_t;
    using Value = plain::Value;
    using Color = plain::Color;
    using InvalidArgument = plain::InvalidArgument;
    using EnumerationMutation = plain::EnumerationMutation;

    class Styleable : public Object {
    public:
        bool isStyleable() const final { return true; }
    };
    template <class Base>
    using Witness = Base;

    template <class T>
    static std::shared_ptr<T> make() {
        return std::make_shared<T>();
    }
    static std::uint64_t serial(const std::shared_ptr<Style>& style) {
        return plain::serialOf(style);
    }
    static std::uint64_t last(const Object& object) { return object.last; }
    static void setLast(Object& object, const std::shared_ptr<Style>& style) {
        object.last = plain::serialOf(style);
    }
    static Value null() { return std::monostate(); }
    static Value number(std::uint64_t value) { return value; }

    static std::array<double, 6> parts(const Color& color) {
        const auto& p = color.parts;
        return {static_cast<double>(color.space), p[0], p[1], p[2], p[3], p[4]};
    }
    static const Color* color(const Value& value) { return std::get_if<Color>(&value); }
    static std::optional<std::uint64_t> number(const Value& value) {
        const auto* number = std::get_if<std::uint64_t>(&value);
        return number ? std::optional(*number) : std::nullopt;
    }
    static const std::string* text(const Value& value) { return std::get_if<std::string>(&value); }

    static void appear(const std::string& name) { plain::setEffectiveAppearance(name); }
    static plain::Tracker& tracker() { return plain::tracker(); }
    static void observeType(const std::shared_ptr<Object>& observer) {
        tracker().addObserver(observer);
    }
    static void unobserveType(const std::shared_ptr<Object>& observer) {
        tracker().removeObserver(observer);
    }
    static void observePosts(const std::shared_ptr<Object>& observer, std::function<void()> told) {
        plain::startObserving(observer, observer.get(), std::move(told));
    }
    static void unobservePosts(const std::shared_ptr<Object>& observer) {
        plain::stopObserving(observer.get());
    }
    static void setDarkAppearanceExists(bool exists) { plain::world().hasDarkAppearance = exists; }
    static void noteRaise() {}
    static void drain() { plain::drain(); }
    static void store(std::optional<std::uint64_t> number) {
        plain::world().stored.reset();
        if (number) {
            plain::world().stored = *number;
        }
    }
    static std::optional<std::string> chosen(const Manager& manager) {
        const auto value = manager.activeModeIdentifier();
        const auto* string = std::get_if<std::string>(&value);
        return string ? *string : std::to_string(std::get<std::uint64_t>(value));
    }
    static void setSystemColors(bool some) {
        plain::world().systemColors.clear();
        if (some) {
            plain::world().systemColors = {
                {"blue", Color::colorWithSRGBRed(0.125, 0.25, 0.875, 1)},
                {"pink", Color::colorWithWhite(0.625, 0.75)},
                {"windowBackground", Color::colorWithSRGBRed(0.75, 0.5, 0.25, 1)}};
        }
    }
    static const std::vector<std::shared_ptr<Provider>>& providers() {
        static const std::vector<std::shared_ptr<Provider>> both = {
            Provider::providerWithIdentifier(
                "main", std::vector<std::string>{"base"},
                [](const auto& style, const auto& scheme) { plain::provideMain(*style, scheme); }),
            Provider::providerWithIdentifier(
                "base", std::nullopt,
                [](const auto& style, const auto& scheme) { plain::provideBase(*style, scheme); })};
        return both;
    }
};

} // namespace zeltest
