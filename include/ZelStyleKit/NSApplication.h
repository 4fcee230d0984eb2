// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSAppearance.h>
#include <ZelStyleKit/NSObject.h>

#include <memory>
#include <optional>

namespace zel::inline v1 {

/// The application object: where a host, or an integration, says how the application looks.
/// Owns: its effective appearance.
/// Threads: the appearance belongs to the main thread; the object is made once, on any thread; in
/// handlers and destructors as well.
/// Failure: none.
class ZEL_EXPORT NSApplication : public NSObject {
public:
    NSApplication();

    /// `sharedApplication`. Made on the first call; from then on `NSApp()` answers it.
    static const std::shared_ptr<NSApplication>& sharedApplication();

    /// `effectiveAppearance`; light until the host says otherwise.
    [[nodiscard]] const NSAppearance& effectiveAppearance() const noexcept { return appearance_; }

    /// `setEffectiveAppearance:`. Calls the observers of "effectiveAppearance", on this thread;
    /// nothing happens where it is the same.
    void setEffectiveAppearance(const NSAppearance& appearance);

private:
    NSAppearance appearance_;
};

/// The application object, or nil while nobody has asked for it.
[[nodiscard]] ZEL_EXPORT std::shared_ptr<NSApplication> NSApp();

} // namespace zel::inline v1
