// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::inline v1 {

// Transfer functions between encoded components and linear light, in pairs that invert each other.
// Both sides run from 0 to 1, and the ends map to exactly 0 and 1. Outside of that range a curve
// goes on: above 1 by its own formula, below 0 mirrored through the origin, so that an extended
// component survives the way there and back. What is not a number stays not a number.
// Threads: pure functions, any thread.

/// IEC 61966-2-1: encoded sRGB component to linear light.
[[nodiscard]] double linearFromSRGB(double encoded) noexcept;
/// IEC 61966-2-1: linear light to encoded sRGB component.
[[nodiscard]] double sRGBFromLinear(double linear) noexcept;

/// ICC.1 parametric curve of function type 0 with gamma 2.2: grey level to linear light.
[[nodiscard]] double linearFromGamma22(double encoded) noexcept;
/// ICC.1 parametric curve of function type 0 with gamma 2.2: linear light to grey level.
[[nodiscard]] double gamma22FromLinear(double linear) noexcept;

} // namespace zel::inline v1
