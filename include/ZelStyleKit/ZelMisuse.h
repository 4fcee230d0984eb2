// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>

#include <functional>
#include <string_view>

namespace zel::inline v1 {

/// Called with a sentence that says what a host does wrong and what to do instead. Runs on the
/// thread that noticed it, with no private lock held; what it raises is swallowed.
using ZelMisuseHandler = std::function<void(std::string_view message)>;

/// Replaces the handler that misuse is reported to; an empty one ends the reports. There is none
/// until one is set, and the library prints nothing itself. Any thread.
ZEL_EXPORT void setMisuseHandler(ZelMisuseHandler handler);

} // namespace zel::inline v1
