// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace zel::inline v1 {

/// An immutable number or boolean. A value: trivially copyable, compared by kind and content.
class NSNumber {
public:
    enum class Kind : std::uint8_t { UnsignedLong, Long, Double, Bool };

    /// `numberWithUnsignedLong:`, `numberWithLong:`, `numberWithDouble:`, `numberWithBool:`
    static constexpr NSNumber numberWithUnsignedLong(std::uint64_t value) noexcept {
        NSNumber number(Kind::UnsignedLong);
        number.unsigned_ = value;
        return number;
    }
    static constexpr NSNumber numberWithLong(std::int64_t value) noexcept {
        NSNumber number(Kind::Long);
        number.signed_ = value;
        return number;
    }
    static constexpr NSNumber numberWithDouble(double value) noexcept {
        NSNumber number(Kind::Double);
        number.double_ = value;
        return number;
    }
    static constexpr NSNumber numberWithBool(bool value) noexcept {
        NSNumber number(Kind::Bool);
        number.unsigned_ = value ? 1 : 0;
        return number;
    }

    [[nodiscard]] constexpr Kind kind() const noexcept { return kind_; }

    /// `unsignedLongValue`: the number as unsigned 64-bit. A negative number wraps; a double is cut
    /// towards zero and held to the type's range, one that is not a number gives 0.
    [[nodiscard]] constexpr std::uint64_t unsignedLongValue() const noexcept {
        switch (kind_) {
        case Kind::Long:
            return static_cast<std::uint64_t>(signed_);
        case Kind::Double:
            if (!(double_ > 0)) {
                return 0;
            }
            return double_ >= 18446744073709551616.0 ? UINT64_MAX
                                                     : static_cast<std::uint64_t>(double_);
        default:
            return unsigned_;
        }
    }

    /// `doubleValue`
    [[nodiscard]] constexpr double doubleValue() const noexcept {
        switch (kind_) {
        case Kind::Long:
            return static_cast<double>(signed_);
        case Kind::Double:
            return double_;
        default:
            return static_cast<double>(unsigned_);
        }
    }

    /// `longValue`: meaningful for `Kind::Long`; other kinds by way of `unsignedLongValue`.
    [[nodiscard]] constexpr std::int64_t longValue() const noexcept {
        return kind_ == Kind::Long ? signed_ : static_cast<std::int64_t>(unsignedLongValue());
    }

    /// `boolValue`: whether the number is not zero.
    [[nodiscard]] constexpr bool boolValue() const noexcept {
        return kind_ == Kind::Double ? double_ != 0 : unsignedLongValue() != 0;
    }

    friend constexpr bool operator==(const NSNumber& a, const NSNumber& b) noexcept {
        if (a.kind_ != b.kind_) {
            return false;
        }
        switch (a.kind_) {
        case Kind::Long:
            return a.signed_ == b.signed_;
        case Kind::Double:
            return a.double_ == b.double_;
        default:
            return a.unsigned_ == b.unsigned_;
        }
    }

private:
    constexpr explicit NSNumber(Kind kind) noexcept : kind_(kind), unsigned_(0) {}

    Kind kind_;
    union {
        std::uint64_t unsigned_;
        std::int64_t signed_;
        double double_;
    };
};

} // namespace zel::inline v1
