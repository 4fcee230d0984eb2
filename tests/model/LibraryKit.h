// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/locks/PrivateLock.h"
#include "style/StylingLock.h"
#include "tests/support/Providers.h"

#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleKit.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string>

namespace zeltest {

/// What the library's side does wrong on request.
enum class Mistake {
    None,
    ForgottenDrain, ///< tasks on the main queue aren't run
    LockKept,       ///< after an exception
    Crash,          ///< when somebody observes the system's appearance
};

/// The library as the player uses it.
struct LibraryKit {
    inline static Mistake mistake = Mistake::None;

    using Object = zel::NSObject;
    using Style = zel::ZelStyle;
    using Scheme = zel::ZelStyleScheme;
    using Domain = zel::ZelStyleDomain;
    using Provider = zel::ZelStyleDefaultValueProvider;
    using Manager = zel::ZelStyleManager;
    using Mode = zel::ZelStyleManagerMode;
    using View = zel::NSView;
    using Controller = zel::NSViewController;
    using Event = zel::ZelStyleChangeEvent;
    using Value = zel::ZelAttributeValue;
    using Color = zel::NSColor;
    using InvalidArgument = zel::ZelInvalidArgument;
    using EnumerationMutation = zel::ZelEnumerationMutation;

    class Styleable : public Object, public zel::ZelStyleable {
    public:
        const zel::ZelStyleable* asZelStyleable() const noexcept final { return this; }
    };
    /// Hears of the tracker's type.
    template <class Base>
    class Witness : public Base {
    protected:
        virtual void typeChanges(bool isPrior) = 0;

    private:
        void observeValueForKeyPath(std::string_view, zel::NSObject&,
                                    const zel::NSKeyValueChange& change, const void*) final {
            typeChanges(change.isPrior);
        }
    };

    template <class T>
    static std::shared_ptr<T> make() {
        return zel::alloc<T>();
    }
    static std::uint64_t serial(const std::shared_ptr<Style>& style) {
        return zel::ZelStyleToken(style).serial();
    }
    static std::uint64_t last(const Object& object) { return object.lastZelStyle().serial(); }
    static void setLast(Object& object, const std::shared_ptr<Style>& style) {
        object.setLastZelStyle(style);
    }
    static Value null() { return zel::NSNull(); }
    static Value number(std::uint64_t value) {
        return zel::NSNumber::numberWithUnsignedLong(value);
    }

    static std::array<double, 6> parts(const Color& color) {
        const auto& c = color.components();
        const auto& space = color.colorSpace();
        const int index = &space == &zel::NSColorSpace::sRGBColorSpace()         ? 0
                          : &space == &zel::NSColorSpace::deviceRGBColorSpace()  ? 1
                          : &space == &zel::NSColorSpace::deviceCMYKColorSpace() ? 3
                                                                                 : 2;
        return {static_cast<double>(index), c[0], c[1], c[2], c[3], c[4]};
    }
    static const Color* color(const Value& value) { return value.color(); }
    static std::optional<std::uint64_t> number(const Value& value) {
        return value.number() ? std::optional(value.number()->unsignedLongValue()) : std::nullopt;
    }
    static const std::string* text(const Value& value) { return value.as<std::string>(); }

    static void appear(std::string_view name) {
        zel::NSApplication::sharedApplication()->setEffectiveAppearance(
            zel::NSAppearance::appearanceNamed(name));
    }
    static zel::ZelStyleSystemAppearance& tracker() {
        return *zel::ZelStyleSystemAppearance::sharedSystemAppearance();
    }
    static void observeType(const std::shared_ptr<Object>& observer) {
        if (mistake == Mistake::Crash) {
            std::abort();
        }
        tracker().addObserver(observer, "currentAppearanceType",
                              zel::NSKeyValueObservingOptions::Prior, nullptr);
    }
    static void unobserveType(const std::shared_ptr<Object>& observer) {
        tracker().removeObserver(*observer, "currentAppearanceType", nullptr);
    }
    static void observePosts(const std::shared_ptr<Object>& observer, std::function<void()> told) {
        zel::NSNotificationCenter::defaultCenter().addObserver(
            observer, [told](const zel::NSNotification&) { told(); },
            "ZelStyleSystemAppearanceChanged", nullptr);
    }
    static void unobservePosts(const std::shared_ptr<Object>& observer) {
        zel::NSNotificationCenter::defaultCenter().removeObserver(
            *observer, "ZelStyleSystemAppearanceChanged", nullptr);
    }
    static void setDarkAppearanceExists(bool exists) {
        zel::NSProcessInfo::setOperatingSystemVersion({10, exists ? 14 : 13, 0});
    }
    static void drain() {
        if (mistake != Mistake::ForgottenDrain) {
            zel::NSMainQueue::mainQueue().drain();
        }
    }
    /// An exception has reached the script.
    static void noteRaise() {
        if (mistake == Mistake::LockKept) {
            new zel::StylingLock; // for good
        }
    }
    static void store(std::optional<std::uint64_t> number) {
        zel::NSUserDefaults::standardUserDefaults().setObject(
            number ? std::optional<zel::NSUserDefaultsValue>(
                         zel::NSNumber::numberWithUnsignedLong(*number))
                   : std::nullopt,
            "style-manager-active-mode");
    }
    static std::optional<std::string> chosen(const Manager& manager) {
        const auto value = manager.activeModeIdentifier();
        const auto* string = std::get_if<std::string>(&value);
        return string ? *string
                      : std::to_string(std::get<zel::NSNumber>(value).unsignedLongValue());
    }
    static void setSystemColors(bool some) {
        zel::NSSystemColors colors;
        if (some) {
            colors.blue = Color::colorWithSRGBRed(0.125, 0.25, 0.875, 1);
            colors.pink = Color::colorWithWhite(0.625, 0.75);
            colors.windowBackground = Color::colorWithSRGBRed(0.75, 0.5, 0.25, 1);
        }
        zel::NSSystemColors::setSystemColors(colors);
    }
    static const std::vector<std::shared_ptr<Provider>>& providers() {
        static const auto found = registeredProviders();
        return found;
    }

    /// Whether this thread has left a lock. All of the library's are of these two kinds; how many
    /// of the second one are held is counted in builds for debugging alone.
    static bool holdsALock() {
        bool holds = zel::StylingLock::isHeld();
#ifndef NDEBUG
        holds = holds || zel::heldPrivateLocks > 0;
#endif
        return holds;
    }
};

} // namespace zeltest
