// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "style/ZelStyleInternals.h"
#include "tests/support/FreeLock.h"
#include "tests/support/Styling.h"

#include <ZelStyleKit/ZelExceptions.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zeltest {

using Style = std::shared_ptr<zel::ZelStyle>;
using Value = std::optional<zel::ZelAttributeValue>;

/// A style without any values.
inline Style makeEmptyStyle() {
    auto style = zel::alloc<zel::ZelStyle>();
    style->init();
    return style;
}

/// A style that inherits from another, without values of its own, in no scheme.
inline Style makeChild(const Style& parent, std::string_view identifier = "child") {
    return zel::alloc<zel::ZelStyle>()->initWithIdentifier(identifier, nullptr, parent);
}

/// A grey, as what stands under a key.
inline Value gray(double level) {
    return zel::NSColor::colorWithWhite(level, 1);
}

/// Accepted updates of a style alone.
inline std::uint64_t localCounter(const Style& style) {
    return zel::ZelStyleInternals::state(*style).counter.load();
}

/// Whether no lock is held that keeps another thread from writing to the style, reading it and
/// updating it.
inline bool everyLockIsFree(const Style& style) {
    if (!stylingLockIsFree()) {
        return false;
    }
    const auto other = makeEmptyStyle();
    runElsewhere([&] {
        (void)style->valueForAttribute("labelColor");
        other->updateStyleWithChanges(nullptr);
    });
    return localCounter(other) == 1;
}

/// Whether the merged values of a style are there.
inline bool hasComputedValues(const Style& style) {
    const zel::MergedValues* merged = zel::ZelStyleInternals::state(*style).merged.load();
    return merged && merged->isComputed();
}

} // namespace zeltest
