// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Watchdog.h"

#include <ZelStyleKit/ZelStyleKit.h>

#include <memory>
#include <vector>

namespace zeltest {

/// Gives a style label colours of these greys, 0 to 1, each in an update of its own, on another
/// thread, which has ended when this returns.
inline void updateElsewhere(const std::shared_ptr<zel::ZelStyle>& style,
                            const std::vector<double>& greys) {
    runElsewhere([&] {
        for (const double grey : greys) {
            style->updateStyleWithChanges([grey](const auto& changed) {
                changed->setLabelColor(zel::NSColor::colorWithSRGBRed(grey, grey, grey, 1));
                return true;
            });
        }
    });
}

} // namespace zeltest
