// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelPortalAppearance.h>

#include <chrono>
#include <memory>

namespace zel::inline v1 {

/// Follows the desktop portal's colour scheme on Qt's event loop, as long as it lives. Made before
/// `ZelStyleManager::setup`, so that the first frame is painted in the desktop's colours, and best
/// even before the application object. Asks again whenever the application becomes the active one.
/// A session bus that takes connections and then stays silent would hold up Qt itself for 25 s, on
/// the main thread, for its theme or for accessibility. Where the bus is silent during the first
/// wait, Qt is therefore left without a session bus for the rest of the process.
/// Owns: the connection, its socket notifiers and its timer; no thread.
/// Threads: the main thread; `statusChanged` and observers are called from the event loop and must
/// not throw. It may be destroyed inside them.
/// Failure: as `ZelPortalAppearance`; a bus that doesn't answer costs the first wait, once.
class ZEL_EXPORT ZelQtPortalAppearance final {
public:
    /// Begins to follow, and waits for the first answer, but not longer than `firstWait`.
    explicit ZelQtPortalAppearance(ZelPortalOptions options = {},
                                   std::chrono::milliseconds firstWait = std::chrono::milliseconds{
                                       100});
    ~ZelQtPortalAppearance();
    ZelQtPortalAppearance(const ZelQtPortalAppearance&) = delete;
    ZelQtPortalAppearance& operator=(const ZelQtPortalAppearance&) = delete;

    /// Status, reason and the portal's number.
    [[nodiscard]] const ZelPortalAppearance& portal() const noexcept;

private:
    class Loop;
    const std::unique_ptr<Loop> loop_;
};

} // namespace zel::inline v1
