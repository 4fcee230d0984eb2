// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSObject.h>
#include <ZelStyleKit/NSUserDefaults.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zel::inline v1 {

class ZelStyleManagerMode;

/// Turns the user's choice of a mode into settings of the default domain and remembers it under
/// "style-manager-active-mode" in the user defaults.
/// Owns: its modes, sorted by rank, then by name in the user's locale, those without one first.
/// Refers to: nothing.
/// Threads: the list has a private lock, under which no store, comparison or mode is asked; modes
/// are applied on the calling thread, which is the one that switches the default domain's schemes,
/// the main thread; in handlers and destructors as well.
/// Failure: adding nil raises `ZelInvalidArgument`; an identifier that no mode has selects the mode
/// of the lowest rank.
class ZEL_EXPORT ZelStyleManager : public NSObject {
public:
    using Modes = std::vector<std::shared_ptr<ZelStyleManagerMode>>;

    ZelStyleManager();
    ~ZelStyleManager() override;

    /// `sharedStyleManager`: the process's manager, made on the first call and kept for good.
    static const std::shared_ptr<ZelStyleManager>& sharedStyleManager();
    /// `setup`. Sets up the default domain's styles and adds the three standard modes, each of
    /// which applies the mode chosen at that moment. Deliberate: a second call adds them again.
    static void setup();

    /// `modes`: the list itself, read without the lock; hold on to a copy where other threads
    /// change it.
    [[nodiscard]] const Modes& modes() const noexcept;
    /// `addMode:` and `removeMode:` (every occurrence); both apply the chosen mode again.
    /// Adding nil raises and changes nothing; removing nil removes nothing.
    void addMode(const std::shared_ptr<ZelStyleManagerMode>& mode);
    void removeMode(const std::shared_ptr<ZelStyleManagerMode>& mode);

    /// `activeModeIdentifier`. What the user defaults hold, read afresh and whatever its type;
    /// "follow-system" where they hold nothing.
    [[nodiscard]] NSUserDefaultsValue activeModeIdentifier() const;
    /// `setActiveModeIdentifier:`. Stores it (none removes the entry), then applies the chosen
    /// mode, also where it was chosen before. True when the user defaults took it durably.
    bool setActiveModeIdentifier(std::optional<std::string_view> identifier);

    /// `activeMode`. Deliberate: always none, since no mode stores being active.
    [[nodiscard]] std::shared_ptr<ZelStyleManagerMode> activeMode() const;

private:
    friend struct ZelStyleManagerInternals;
    struct State;

    /// `_shouldBeActiveMode`
    [[nodiscard]] std::shared_ptr<ZelStyleManagerMode> _shouldBeActiveMode() const;
    /// `_updateActiveMode`
    void _updateActiveMode();

    const std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
