// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <QActionGroup>

#include <memory>

class QMenu;

namespace zel::inline v1 {

class ZelStyleManager;

/// The modes that a user can choose from, as actions in an exclusive group: each shows its mode's
/// localised name, choosing it chooses the mode for good, and the mark stands at the mode that
/// applies. An action's data is its mode's identifier; where it has none, the action is disabled,
/// since the mode can't be chosen. Owns: its actions. Refers to: the manager, which it shares.
/// Threads: the main thread. Failure: none.
class ZEL_EXPORT ZelQtModeActions final : public QActionGroup {
public:
    /// Shows the modes of the shared manager, which `ZelStyleManager::setup` adds.
    explicit ZelQtModeActions(QObject* parent = nullptr);
    ZelQtModeActions(QObject* parent, std::shared_ptr<ZelStyleManager> manager);
    ~ZelQtModeActions() override;
    ZelQtModeActions(const ZelQtModeActions&) = delete;
    ZelQtModeActions& operator=(const ZelQtModeActions&) = delete;

    /// Adds the actions to a menu, and has them up to date whenever it opens, also where somebody
    /// else has chosen or added a mode.
    void addTo(QMenu& menu);
    /// Brings actions and mark up to date. For actions that stand elsewhere than in a menu.
    void refresh();

private:
    [[nodiscard]] bool showsModes() const;
    void showModes();

    const std::shared_ptr<ZelStyleManager> manager_;
};

} // namespace zel::inline v1
