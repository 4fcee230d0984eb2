// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace gallery {

/// Gives the default display the gallery's style sheet. It is written once and never again: its
/// colours are the named ones, which are those of the style that applies to each widget.
void useStyleSheet();

} // namespace gallery
