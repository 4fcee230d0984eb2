// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/mode/ModeCommand.h"

#include "tools/zelstyle/mode/Modes.h"
#include "tools/zelstyle/terminal/ColorText.h"
#include "tools/zelstyle/terminal/Output.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelStyleManager.h>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zel::tool {
namespace {

using nlohmann::ordered_json;

std::string listAsText() {
    const ZelStyleManager::Modes& modes = ZelStyleManager::sharedStyleManager()->modes();
    std::size_t width = 0;
    for (const auto& mode : modes) {
        width = std::max(width, mode->identifier().value_or("").size());
    }
    std::string text;
    for (const auto& mode : modes) {
        text += mode == modeInForce() ? "* " : "  ";
        text += padded(mode->identifier().value_or(""), width) + "  ";
        text += mode->name().value_or("") + '\n';
    }
    return text;
}

ordered_json orNull(const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json();
}

std::string listAsJson() {
    ordered_json modes = ordered_json::array();
    for (const auto& mode : ZelStyleManager::sharedStyleManager()->modes()) {
        modes.push_back({{"identifier", orNull(mode->identifier())},
                         {"name", orNull(mode->name())},
                         {"rank", mode->rank()},
                         {"chosen", mode == modeInForce()}});
    }
    const ordered_json document{{"modes", std::move(modes)}};
    return document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + '\n';
}

} // namespace

int runMode(const ModeOptions& options) {
    NSApplication::sharedApplication();
    ZelStyleManager::setup();
    if (options.chooses) {
        if (const int code = chooseMode(options.identifier); code != ExitDone) {
            return code;
        }
    }
    Output output;
    output.write(options.json ? listAsJson() : listAsText());
    return output.report();
}

} // namespace zel::tool
