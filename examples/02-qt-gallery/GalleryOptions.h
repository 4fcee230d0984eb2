// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

namespace gallery {

/// Who says whether it is dark.
enum class Source { Portal, Light, Dark };

/// What the command line asks for.
struct Options {
    Source source = Source::Portal;
    QString screenshot; ///< file for a picture of the window; empty: none, and the window stays
    QString choose;     ///< identifier of a mode to choose from the menu; empty: none
    std::optional<bool> then; ///< the picture is taken once the window has turned dark, or light
};

/// Parses the command line; ends the program where it asks for help or is wrong.
[[nodiscard]] Options optionsOf(int argc, char** argv);

} // namespace gallery
