// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/NSNumber.h>

#include <any>
#include <concepts>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace zel::inline v1 {

/// The null marker: what stands under a key to which nil was written. Present, unlike an absent
/// value; in a child style it hides the inherited value.
struct NSNull {
    friend constexpr bool operator==(NSNull, NSNull) noexcept { return true; }
};

/// What stands under an attribute key: a colour, a number, any other value, or the null marker.
/// Styles never interpret it.
/// Owns: a value that is neither colour nor number, shared among its copies.
/// Threads: a value; the shared content is immutable.
/// Failure: asking for what it is not gives nothing.
class ZelAttributeValue {
public:
    using Other = std::shared_ptr<const std::any>;

    /// What a value can be made from besides a colour, a number and the null marker. Not an
    /// optional: where nil may be written, `std::optional<ZelAttributeValue>` says so.
    template <class T>
    static constexpr bool IsContent =
        !std::same_as<std::remove_cvref_t<T>, ZelAttributeValue> &&
        !std::same_as<std::remove_cvref_t<T>, NSColor> &&
        !std::same_as<std::remove_cvref_t<T>, NSNumber> &&
        !std::same_as<std::remove_cvref_t<T>, NSNull> &&
        !std::convertible_to<std::remove_cvref_t<T>, Other> &&
        !std::same_as<std::remove_cvref_t<T>, std::nullopt_t> &&
        !(std::convertible_to<std::nullopt_t, std::remove_cvref_t<T>> &&
          !std::same_as<std::remove_cvref_t<T>, std::any>);

    ZelAttributeValue(NSNull) noexcept : value_(NSNull{}) {}
    ZelAttributeValue(const NSColor& color) noexcept : value_(color) {}
    ZelAttributeValue(NSNumber number) noexcept : value_(number) {}
    /// Any other copyable value, a string or a host's own type. Plain numbers and booleans become
    /// numbers, string literals strings, a nil pointer the null marker.
    template <class T>
    requires IsContent<T>
    explicit ZelAttributeValue(T&& value) : value_(contentOf(std::forward<T>(value))) {}
    /// Content that is shared already. Nil counts as the null marker.
    explicit ZelAttributeValue(Other other) noexcept {
        if (other) {
            value_ = std::move(other);
        }
    }

    [[nodiscard]] bool isNull() const noexcept { return std::holds_alternative<NSNull>(value_); }
    [[nodiscard]] const NSColor* color() const noexcept { return std::get_if<NSColor>(&value_); }
    [[nodiscard]] const NSNumber* number() const noexcept { return std::get_if<NSNumber>(&value_); }
    /// Content that is neither colour nor number; nil where it is one of those or null.
    [[nodiscard]] Other other() const noexcept {
        const Other* held = std::get_if<Other>(&value_);
        return held ? *held : nullptr;
    }
    /// The other content as a T; `nullptr` where it is something else.
    template <class T>
    [[nodiscard]] const T* as() const noexcept {
        const Other* held = std::get_if<Other>(&value_);
        return held ? std::any_cast<T>(held->get()) : nullptr;
    }

    /// Colours and numbers by content, other values by identity of what is shared.
    friend bool operator==(const ZelAttributeValue& a, const ZelAttributeValue& b) noexcept {
        return a.value_ == b.value_;
    }

private:
    using Content = std::variant<NSNull, NSColor, NSNumber, Other>;

    template <class T>
    static Content contentOf(T&& value) {
        using Plain = std::remove_cvref_t<T>;
        if constexpr (std::same_as<Plain, bool>) {
            return NSNumber::numberWithBool(value);
        } else if constexpr (std::unsigned_integral<Plain>) {
            return NSNumber::numberWithUnsignedLong(value);
        } else if constexpr (std::signed_integral<Plain>) {
            return NSNumber::numberWithLong(value);
        } else if constexpr (std::floating_point<Plain>) {
            return NSNumber::numberWithDouble(static_cast<double>(value));
        } else if constexpr (std::convertible_to<T, const char*>) {
            const char* const text = value;
            return text ? Content(std::make_shared<const std::any>(std::string(text))) : NSNull{};
        } else {
            if constexpr (std::equality_comparable_with<const Plain&, std::nullptr_t>) {
                if (value == nullptr) {
                    return NSNull{};
                }
            }
            return std::make_shared<const std::any>(std::forward<T>(value));
        }
    }

    Content value_;
};

/// Attribute key to value, by key.
using ZelAttributeDictionary = std::map<std::string, ZelAttributeValue, std::less<>>;

} // namespace zel::inline v1
