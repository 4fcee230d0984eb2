// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>

namespace zel::tool {

/// What the command answers to its caller.
enum ExitCode : int {
    ExitDone = 0,
    ExitFailed = 1, ///< something outside went wrong: a file, the user defaults
    ExitMisuse = 2, ///< the arguments ask for what there is not
};

/// When colours are shown as coloured cells and not only as numbers.
enum class ColorChoice { Auto, Always, Never };

/// Where `watch` learns what the system looks like.
enum class SourceChoice { Auto, Portal, Stdin };

struct WatchOptions {
    SourceChoice source = SourceChoice::Auto;
    /// Bounds the wait for the desktop's first answer, before anything is printed.
    std::chrono::milliseconds wait{100};
    ColorChoice color = ColorChoice::Auto;
    bool json = false;
};

struct DemoOptions {
    ColorChoice color = ColorChoice::Auto;
};

struct ModeOptions {
    std::string identifier;
    bool chooses = false; ///< whether an identifier was given, which may be an empty one
    bool json = false;
};

enum class PaletteFormat { Text, Json, Svg };

struct PaletteOptions {
    std::string scheme = "both";
    PaletteFormat format = PaletteFormat::Text;
    std::string output; ///< a file's path; empty: standard output
    ColorChoice color = ColorChoice::Auto;
};

} // namespace zel::tool
