// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/PortalSource.h"

namespace zel::tool {

bool portalIsBuiltIn() noexcept {
    return false;
}

std::unique_ptr<AppearanceSource> followPortal(std::chrono::milliseconds /*wait*/,
                                               bool /*onlyOnABus*/) {
    return nullptr;
}

} // namespace zel::tool
