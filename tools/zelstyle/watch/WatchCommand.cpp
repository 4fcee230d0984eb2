// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/WatchCommand.h"

#include "tools/zelstyle/terminal/Message.h"
#include "tools/zelstyle/terminal/Output.h"
#include "tools/zelstyle/watch/EventLoop.h"
#include "tools/zelstyle/watch/InputSource.h"
#include "tools/zelstyle/watch/PortalSource.h"
#include "tools/zelstyle/watch/ThemedWindow.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelStyleManager.h>

#include <string>
#include <utility>

namespace zel::tool {
namespace {

DeliveryFormat formatFor(const WatchOptions& options) {
    if (options.json) {
        return DeliveryFormat::Json;
    }
    return Output::showsColors(options.color) ? DeliveryFormat::Colored : DeliveryFormat::Plain;
}

/// The portal, where it is wanted and there; nil for standard input.
std::unique_ptr<AppearanceSource> portalFor(const WatchOptions& options) {
    if (options.source == SourceChoice::Stdin) {
        return nullptr;
    }
    const bool isChosen = options.source == SourceChoice::Portal;
    auto portal = followPortal(options.wait, !isChosen);
    if (!portal && !isChosen) {
        printMessage(std::string(portalIsBuiltIn() ? "no session bus answers"
                                                   : "the portal source is not built in") +
                     "; reading commands from standard input ('help' lists them)");
    }
    return portal;
}

} // namespace

int themeWindow(EventLoop& loop, Output& output, DeliveryFormat format,
                const std::function<std::unique_ptr<AppearanceSource>(ThemedWindow&)>& makeSource) {
    NSApplication::sharedApplication(); // before the library looks for it
    ZelStyleManager::setup();
    ThemedWindow window(
        [&output, format](const Delivery& delivery) { printDelivery(delivery, format, output); });
    const auto source = makeSource(window);
    return loop.run(*source, output);
}

int runWatch(const WatchOptions& options) {
    if (options.source == SourceChoice::Portal && !portalIsBuiltIn()) {
        printMessage("the portal source is not built in; known: stdin");
        return ExitMisuse;
    }
    EventLoop loop;
    // Before the set-up, so that the first styles delivered are the right ones.
    auto portal = portalFor(options);
    Output output;
    return themeWindow(loop, output, formatFor(options),
                       [&portal](ThemedWindow& window) -> std::unique_ptr<AppearanceSource> {
                           if (portal) {
                               return std::move(portal);
                           }
                           return std::make_unique<InputSource>(window);
                       });
}

} // namespace zel::tool
