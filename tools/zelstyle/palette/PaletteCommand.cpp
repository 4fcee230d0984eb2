// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/palette/PaletteCommand.h"

#include "tools/zelstyle/palette/PaletteFormats.h"
#include "tools/zelstyle/terminal/Message.h"
#include "tools/zelstyle/terminal/Output.h"

#include <ZelStyleKit/ZelStyleScheme.h>

#include <cerrno>
#include <fstream>
#include <system_error>

namespace zel::tool {
namespace {

std::vector<Palette> palettesOf(const std::string& scheme) {
    if (scheme == "both") {
        return {paletteOf(ZelStyleSchemeIdentifierLight), paletteOf(ZelStyleSchemeIdentifierDark)};
    }
    return {paletteOf(scheme)};
}

std::string formatted(const std::vector<Palette>& palettes, const PaletteOptions& options) {
    switch (options.format) {
    case PaletteFormat::Json:
        return paletteJson(palettes);
    case PaletteFormat::Svg:
        return paletteSvg(palettes);
    case PaletteFormat::Text:
        break;
    }
    // What goes into a file is coloured only where that is asked for.
    const bool colored = options.output.empty() ? Output::showsColors(options.color)
                                                : options.color == ColorChoice::Always;
    return paletteText(palettes, colored);
}

int writeFile(const std::string& path, const std::string& text) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (file) {
        return ExitDone;
    }
    printMessage("cannot write '" + quotable(path) +
                 "': " + std::generic_category().message(errno));
    return ExitFailed;
}

} // namespace

int runPalette(const PaletteOptions& options) {
    const std::string text = formatted(palettesOf(options.scheme), options);
    if (!options.output.empty()) {
        return writeFile(options.output, text);
    }
    Output output;
    output.write(text);
    return output.report();
}

} // namespace zel::tool
