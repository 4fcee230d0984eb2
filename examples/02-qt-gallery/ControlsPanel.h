// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

namespace gallery {

class Card;

/// Buttons, choices, ranges and entries.
Card* makeControls(QWidget* parent);
/// A table with a selection.
Card* makeTable(QWidget* parent);
/// Some controls in the style that is derived from the main one, and accents to choose from.
Card* makeTinted(QWidget* parent);

} // namespace gallery
