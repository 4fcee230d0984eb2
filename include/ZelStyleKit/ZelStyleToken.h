// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <cstdint>
#include <memory>

namespace zel::inline v1 {

class ZelStyle;

/// Says which style without holding it: a serial number that is never used twice in a process, so
/// that a new style at an old address is a different style. Default: nil. A token of a style that
/// has ended is not nil and equals no later style.
class ZEL_EXPORT ZelStyleToken {
public:
    constexpr ZelStyleToken() noexcept = default;
    constexpr ZelStyleToken(std::nullptr_t) noexcept {}
    constexpr explicit ZelStyleToken(std::uint64_t serial) noexcept : serial_(serial) {}
    /// The token of a style; nil for nil.
    ZelStyleToken(const std::shared_ptr<ZelStyle>& style) noexcept;

    [[nodiscard]] constexpr std::uint64_t serial() const noexcept { return serial_; }
    [[nodiscard]] constexpr bool isNil() const noexcept { return serial_ == 0; }

    friend constexpr bool operator==(ZelStyleToken, ZelStyleToken) noexcept = default;

private:
    std::uint64_t serial_ = 0;
};

} // namespace zel::inline v1
