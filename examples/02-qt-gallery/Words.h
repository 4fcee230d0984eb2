// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFont>

class QLabel;
class QString;
class QWidget;

namespace gallery {

/// A line in the style's label colour.
QLabel* makeTitle(const QString& text, double points, QFont::Weight weight);
/// A paragraph in the style's secondary label colour.
QLabel* makeNote(const QString& text, QWidget* parent);

} // namespace gallery
