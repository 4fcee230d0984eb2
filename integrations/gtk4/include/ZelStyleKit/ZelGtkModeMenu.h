// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <gio/gio.h>

#include <memory>

namespace zel::inline v1 {

class ZelStyleManager;

/// A menu of the appearance modes, and the action behind it: choosing one has the manager apply and
/// remember it.
/// Owns: menu and action (by reference count). Refers to: the manager, weakly.
/// Threads: the main thread.
/// Failure: without a manager the menu is empty.
class ZEL_EXPORT ZelGtkModeMenu final {
public:
    /// The name of the action, without the prefix of the group that it is put into.
    static constexpr const char* ActionName = "zel-mode";

    /// The manager's modes as they are now. The prefix is that of the action map or group that the
    /// host adds the action to: "app", "win" or one of its own.
    ZelGtkModeMenu(const std::shared_ptr<ZelStyleManager>& manager, const char* prefix);
    ~ZelGtkModeMenu();
    ZelGtkModeMenu(const ZelGtkModeMenu&) = delete;
    ZelGtkModeMenu& operator=(const ZelGtkModeMenu&) = delete;

    /// One item for each mode, in the manager's order, with its name; disabled where the mode has
    /// no identifier, and so can't be chosen.
    [[nodiscard]] GMenuModel* menu() const noexcept;
    /// Its state is the chosen mode's identifier, a string.
    [[nodiscard]] GAction* action() const noexcept;

    /// Reads modes and choice anew, after either was changed elsewhere.
    void refresh();

private:
    struct State;
    const std::unique_ptr<State> state_;
};

} // namespace zel::inline v1
