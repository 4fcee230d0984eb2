// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>

namespace zel::inline v1 {

struct AttributeSlot;

/// An immutable number or boolean. A value: trivially copyable, compared by kind and content.
class NSNumber {
public:
    enum class Kind : std::uint8_t { UnsignedLong, Long, Double, Boolean };

    /// `numberWithUnsignedLong:`, `numberWithLong:`, `numberWithDouble:`, `numberWithBool:`
    static constexpr NSNumber numberWithUnsignedLong(std::uint64_t value) noexcept {
        return {Kind::UnsignedLong, value};
    }
    static constexpr NSNumber numberWithLong(std::int64_t value) noexcept {
        return {Kind::Long, static_cast<std::uint64_t>(value)};
    }
    static constexpr NSNumber numberWithDouble(double value) noexcept {
        return {Kind::Double, std::bit_cast<std::uint64_t>(value)};
    }
    static constexpr NSNumber numberWithBool(bool value) noexcept {
        return {Kind::Boolean, std::uint64_t{value}};
    }

    [[nodiscard]] constexpr Kind kind() const noexcept { return kind_; }

    /// `unsignedLongValue`: the number as unsigned 64-bit. A negative number wraps; a double is cut
    /// towards zero and held to the type's range, one that is not a number gives 0.
    [[nodiscard]] constexpr std::uint64_t unsignedLongValue() const noexcept {
        if (kind_ != Kind::Double) {
            return bits_;
        }
        if (!(real() > 0)) {
            return 0;
        }
        return real() >= 18446744073709551616.0 ? UINT64_MAX : static_cast<std::uint64_t>(real());
    }

    /// `doubleValue`
    [[nodiscard]] constexpr double doubleValue() const noexcept {
        switch (kind_) {
        case Kind::Long:
            return static_cast<double>(static_cast<std::int64_t>(bits_));
        case Kind::Double:
            return real();
        default:
            return static_cast<double>(bits_);
        }
    }

    /// `longValue`: meaningful for `Kind::Long`; other kinds by way of `unsignedLongValue`.
    [[nodiscard]] constexpr std::int64_t longValue() const noexcept {
        return static_cast<std::int64_t>(unsignedLongValue());
    }

    /// `boolValue`: whether the number is not zero.
    [[nodiscard]] constexpr bool boolValue() const noexcept {
        return kind_ == Kind::Double ? real() != 0 : bits_ != 0;
    }

    friend constexpr bool operator==(const NSNumber& a, const NSNumber& b) noexcept {
        return a.kind_ == b.kind_ &&
               (a.kind_ == Kind::Double ? a.real() == b.real() : a.bits_ == b.bits_);
    }

private:
    friend struct AttributeSlot;
    constexpr NSNumber(Kind kind, std::uint64_t bits) noexcept : kind_(kind), bits_(bits) {}
    [[nodiscard]] constexpr double real() const noexcept { return std::bit_cast<double>(bits_); }

    Kind kind_;
    std::uint64_t bits_; ///< of the number in its kind
};

} // namespace zel::inline v1
