// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/Export.h>
#include <ZelStyleKit/NSColor.h>

#include <gdk/gdk.h>

#include <optional>

namespace zel::inline v1 {

/// A colour as GTK draws it: encoded sRGB, straight alpha, single precision, clamped to 0..1; none
/// for a colour whose space has no RGB form. A pure function, any thread.
[[nodiscard]] ZEL_EXPORT std::optional<GdkRGBA> ZelGdkRGBAWithColor(const NSColor& color) noexcept;

/// A GTK colour as an sRGB colour. A pure function, any thread.
[[nodiscard]] ZEL_EXPORT NSColor ZelColorWithGdkRGBA(const GdkRGBA& color) noexcept;

} // namespace zel::inline v1
