// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

namespace zel::inline v1 {

/// What the system looks like. The tracker itself produces no other values.
enum ZelStyleSystemAppearanceType : std::uint64_t {
    ZelStyleSystemAppearanceTypeLight = 0,
    ZelStyleSystemAppearanceTypeDark = 1,
};

/// "ZelStyleSystemAppearanceChanged", posted on the main queue after every change, the tracker as
/// its object; receivers read the type. A modifiable variable that holds a fixed string.
extern ZEL_EXPORT std::string_view ZelStyleSystemAppearanceChangedNotification;

/// Tracks whether the application's effective appearance is light or dark.
/// Owns: the type. Refers to: the application object, as an observer of "effectiveAppearance".
/// Threads: made once, on any thread; determined and set on the main thread, in handlers and
/// destructors as well; the type is one atomic word; the notification always comes later, on the
/// main queue.
/// Failure: none; no application object, no match and a system without dark appearance are light.
class ZEL_EXPORT ZelStyleSystemAppearance : public NSObject {
public:
    ZelStyleSystemAppearance();
    ~ZelStyleSystemAppearance() override;

    /// `sharedSystemAppearance`: the process's tracker, made on the first call, of the class that
    /// this names, and kept for good.
    template <class Tracker = ZelStyleSystemAppearance>
    static const std::shared_ptr<ZelStyleSystemAppearance>& sharedSystemAppearance() {
        return shared(
            []() -> std::shared_ptr<ZelStyleSystemAppearance> { return alloc<Tracker>(); });
    }

    /// `init`: starts to observe, then determines.
    std::shared_ptr<NSObject> init() override;

    /// `determineFromSystemAppearance`
    void determineFromSystemAppearance();

    /// Deliberate: only the context is looked at; one other than the tracker itself is ignored.
    void observeValueForKeyPath(std::string_view keyPath, NSObject& ofObject,
                                const NSKeyValueChange& change, const void* context) override;

    /// `currentAppearanceType`
    [[nodiscard]] std::uint64_t currentAppearanceType() const noexcept {
        return type_.load(std::memory_order_acquire);
    }
    /// `setCurrentAppearanceType:`. Stores whatever it is given; where that is a change, announces
    /// "currentAppearanceType" to its observers at once and posts the notification later.
    void setCurrentAppearanceType(std::uint64_t type);

private:
    using Make = std::shared_ptr<ZelStyleSystemAppearance> (*)();
    static const std::shared_ptr<ZelStyleSystemAppearance>& shared(Make make);

    std::atomic<std::uint64_t> type_{ZelStyleSystemAppearanceTypeLight};
};

} // namespace zel::inline v1
