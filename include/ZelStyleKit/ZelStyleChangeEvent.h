// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zel::inline v1 {

class NSObject;
class ZelStyle;

/// Why a change handler is called. Unsigned 64-bit; a notification passes any value through.
enum ZelStyleChangeEvent : std::uint64_t {
    ZelStyleChangeEventInitial = 0, ///< once, at registration
    ZelStyleChangeEventChanged = 1, ///< every notification
};

/// Called with (owner, the style that applies to it or nil, event). Runs on the thread that
/// notifies or registers, with the styling lock of the process held: it must not wait for another
/// thread that needs this lock. It may register and unregister any listener, destroy its owner,
/// change identifiers, switch schemes and update styles. It lives as long as its owner, so it must
/// not hold its owner strongly.
using ZelStyleChangeHandler =
    std::function<void(const std::shared_ptr<NSObject>& owner,
                       const std::shared_ptr<ZelStyle>& style, ZelStyleChangeEvent event)>;

/// How a notification is delivered; travels unchanged through every step of it.
struct ZelStyleDelivery {
    ZelStyleChangeEvent withEvent = ZelStyleChangeEventChanged;
    /// Call listeners even where their style is the one delivered last.
    bool force = false;
    /// Narrows `force` to listeners whose style is this one or descends from it; an unforced
    /// notification ignores it.
    std::shared_ptr<ZelStyle> forStyleOnly = nullptr;
};

} // namespace zel::inline v1
