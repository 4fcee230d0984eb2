// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/NSColor.h>
#include <ZelStyleKit/NSNumber.h>

#include <optional>

namespace zelfuzz {

using zel::NSColor;
using zel::NSNumber;

/// Whether two doubles have the same bits: NaNs with their payload, and zeros with their sign.
[[nodiscard]] bool areSameBits(double a, double b);
[[nodiscard]] bool areSameBits(const NSColor& a, const NSColor& b);
[[nodiscard]] bool areSameBits(const NSNumber& a, const NSNumber& b);

/// One of the predefined colour spaces, or of the custom ones of every size.
[[nodiscard]] const zel::NSColorSpace& spaceNumbered(char letter);

/// What holds for any colour: its conversions, effects and alpha, and its equality.
void checkColor(const NSColor& color, double alpha);

/// What holds for any number: what it is as another kind.
void checkNumber(const NSNumber& number);

} // namespace zelfuzz
