// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/mode/Modes.h"

#include "tools/zelstyle/Options.h"
#include "tools/zelstyle/terminal/Message.h"

#include <ZelStyleKit/ZelStyleManager.h>

#include <variant>

namespace zel::tool {

std::shared_ptr<ZelStyleManagerMode> modeWithIdentifier(std::string_view identifier) {
    for (const auto& mode : ZelStyleManager::sharedStyleManager()->modes()) {
        if (mode->identifier() == identifier) {
            return mode;
        }
    }
    return nullptr;
}

std::shared_ptr<ZelStyleManagerMode> modeInForce() {
    const auto& manager = ZelStyleManager::sharedStyleManager();
    const NSUserDefaultsValue stored = manager->activeModeIdentifier();
    const auto* identifier = std::get_if<std::string>(&stored);
    auto mode = identifier ? modeWithIdentifier(*identifier) : nullptr;
    return mode || manager->modes().empty() ? mode : manager->modes().front();
}

std::string knownModes() {
    std::string list;
    for (const auto& mode : ZelStyleManager::sharedStyleManager()->modes()) {
        if (const auto identifier = mode->identifier()) {
            list += (list.empty() ? "" : ", ") + *identifier;
        }
    }
    return list;
}

int chooseMode(std::string_view identifier) {
    if (!modeWithIdentifier(identifier)) {
        printMessage("unknown mode '" + quotable(identifier) + "'; known: " + knownModes());
        return ExitMisuse;
    }
    if (!ZelStyleManager::sharedStyleManager()->setActiveModeIdentifier(identifier)) {
        printMessage("the mode could not be stored in the user defaults; is "
                     "$XDG_CONFIG_HOME/zelstyle (or ~/.config/zelstyle) writable?");
        return ExitFailed;
    }
    return ExitDone;
}

} // namespace zel::tool
