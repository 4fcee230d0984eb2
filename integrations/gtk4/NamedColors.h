// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ZelStyleKit/ZelStyle.h>

#include <string>

namespace zel::inline v1 {

/// A style's colours in the words of GTK's style sheets: `@define-color zel_backgroundColor
/// rgba(236,236,236,1);` and so on, one line for each attribute of the style, predefined or not,
/// that holds a colour with an RGB form, by key. Any thread.
[[nodiscard]] std::string namedColorsOf(const ZelStyle& style);

} // namespace zel::inline v1
