// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::inline v1 {

/// Has Qt find no session bus, in this process and for good, unless it is connected to one already.
/// On the main thread, before or after the application object is made.
void leaveQtWithoutSessionBus();

} // namespace zel::inline v1
