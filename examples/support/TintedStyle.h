// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyle.h>

#include <string_view>

namespace gallery {

/// A style derived from the main one: its surfaces are tinted with the accent colour, whichever
/// that is, and everything else is inherited.
inline constexpr std::string_view tintedStyle = "tinted";

/// Adds it to the light and to the dark scheme.
void addTintedStyles();

/// Has the main styles of both schemes, and so those derived from them, take another accent.
void setAccent(const zel::NSColor& accent);

} // namespace gallery
