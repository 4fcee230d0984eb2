// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/Options.h"
#include "tools/zelstyle/watch/DeliveryPrinter.h"

#include <functional>
#include <memory>

namespace zel::tool {

class AppearanceSource;
class EventLoop;
class ThemedWindow;

/// Brings the default domain up, themes a window and prints what is delivered to its parts until a
/// source of the system's appearance ends, the user ends it, or nobody reads any more. Answers the
/// exit code.
int runWatch(const WatchOptions& options);

/// The same on a loop of the caller's, with the source that `makeSource` makes once the window
/// stands.
int themeWindow(EventLoop& loop, Output& output, DeliveryFormat format,
                const std::function<std::unique_ptr<AppearanceSource>(ThemedWindow&)>& makeSource);

} // namespace zel::tool
