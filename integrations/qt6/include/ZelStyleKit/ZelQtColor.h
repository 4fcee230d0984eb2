// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSColor.h>

#include <optional>

class QColor;

namespace zel::inline v1 {

/// The colour in sRGB, each component held to 0..1 and to the nearest of the 256 steps that Qt
/// paints in; an invalid one for no colour, or for one of a space without an RGB form.
[[nodiscard]] ZEL_EXPORT QColor ZelQColorWithColor(const std::optional<NSColor>& color);

/// The colour in sRGB; none for an invalid one.
[[nodiscard]] ZEL_EXPORT std::optional<NSColor> ZelColorWithQColor(const QColor& color);

} // namespace zel::inline v1
