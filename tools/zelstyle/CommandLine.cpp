// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/CommandLine.h"

#include "tools/zelstyle/Options.h"
#include "tools/zelstyle/demo/DemoCommand.h"
#include "tools/zelstyle/mode/ModeCommand.h"
#include "tools/zelstyle/palette/PaletteCommand.h"
#include "tools/zelstyle/terminal/Message.h"
#include "tools/zelstyle/terminal/Output.h"
#include "tools/zelstyle/watch/WatchCommand.h"

#include <CLI/CLI.hpp>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace zel::tool {
namespace {

constexpr const char* commandNames = "watch, demo, mode, palette";

template <class Value>
using Names = std::vector<std::pair<std::string, Value>>;

template <class Value>
std::string listOf(const Names<Value>& names) {
    std::string list;
    for (const auto& name : names) {
        list += (list.empty() ? "" : ", ") + name.first;
    }
    return list;
}

/// An option whose values have names.
template <class Value>
CLI::Option* addChoice(CLI::App& app, const std::string& flag, Value& value,
                       const std::string& what, const std::string& text,
                       const Names<Value>& names) {
    const auto choose = [&value, what, names](const std::string& given) {
        for (const auto& name : names) {
            if (name.first == given) {
                value = name.second;
                return;
            }
        }
        throw CLI::ValidationError("unknown " + what + " '" + given + "'; known: " + listOf(names));
    };
    std::string known = listOf(names);
    return app.add_option_function<std::string>(flag, choose, text + " (" + known + ")")
        ->type_name("NAME")
        ->take_last();
}

void addColorChoice(CLI::App& app, ColorChoice& color) {
    addChoice(app, "--color", color, "colour choice",
              "Show colours as coloured cells; auto: on a terminal, unless NO_COLOR is set",
              Names<ColorChoice>{{"auto", ColorChoice::Auto},
                                 {"always", ColorChoice::Always},
                                 {"never", ColorChoice::Never}});
}

void addWatch(CLI::App& app, WatchOptions& options, int& wait) {
    addChoice(
        app, "--source", options.source, "source",
        "Where the system's appearance comes from; unless given, the portal where a session "
        "bus answers, else stdin",
        Names<SourceChoice>{{"portal", SourceChoice::Portal}, {"stdin", SourceChoice::Stdin}});
    app.add_option("--wait", wait,
                   "Wait at most so many milliseconds for the portal's first answer")
        ->type_name("MS")
        ->check(CLI::Range(0, 60000))
        ->capture_default_str();
    app.add_flag("--json", options.json, "One JSON object for each delivery, each on one line");
    addColorChoice(app, options.color);
}

void addMode(CLI::App& app, ModeOptions& options) {
    app.add_option("identifier", options.identifier, "The mode to choose; without it, lists them")
        ->type_name("IDENTIFIER");
    app.add_flag("--json", options.json, "List the modes as JSON");
}

void addPalette(CLI::App& app, PaletteOptions& options) {
    addChoice(app, "--scheme", options.scheme, "scheme",
              "The scheme whose values to show; unless given, both light and dark",
              Names<std::string>{
                  {"light", "light"}, {"dark", "dark"}, {"default", "default"}, {"both", "both"}});
    addChoice(app, "--format", options.format, "format", "How to write them; unless given, text",
              Names<PaletteFormat>{{"text", PaletteFormat::Text},
                                   {"json", PaletteFormat::Json},
                                   {"svg", PaletteFormat::Svg}});
    app.add_option("--output", options.output, "Write into this file instead of standard output")
        ->type_name("FILE");
    addColorChoice(app, options.color);
}

/// What was wrong with the arguments, in one line.
std::string explain(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> extras = app.remaining();
    const bool hasExtras = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
    if (hasExtras && app.get_subcommands().empty() && !extras.empty() &&
        extras.front().rfind('-', 0) != 0) {
        return "unknown command '" + extras.front() + "'; known: " + commandNames;
    }
    return error.what();
}

/// Prints a help text or the version, which the parser treats as a way of ending.
int printAnswer(CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream text;
    app.exit(error, text, text);
    Output output;
    output.write(text.str());
    return output.report();
}

/// The parser with its commands, and what they are told.
struct CommandLine {
    CommandLine() {
        app.require_subcommand(0, 1);
        app.set_version_flag("--version", "zelstyle " ZELSTYLE_VERSION);
        addWatch(watch, watchOptions, wait);
        addColorChoice(demo, demoOptions.color);
        addMode(mode, modeOptions);
        addPalette(palette, paletteOptions);
    }

    /// Runs the command that was named.
    int run() {
        if (watch) {
            watchOptions.wait = std::chrono::milliseconds(wait);
            return runWatch(watchOptions);
        }
        if (demo) {
            return runDemo(demoOptions);
        }
        if (mode) {
            modeOptions.chooses = mode.count("identifier") > 0;
            return runMode(modeOptions);
        }
        return palette ? runPalette(paletteOptions) : printAnswer(app, CLI::CallForHelp());
    }

    CLI::App app{"Shows how named colours follow the desktop.", "zelstyle"};
    CLI::App& watch = *app.add_subcommand(
        "watch", "Theme a small window and print every style that is delivered to its parts");
    CLI::App& demo = *app.add_subcommand(
        "demo", "Run watch through a prepared story; stores nothing, ends by itself");
    CLI::App& mode =
        *app.add_subcommand("mode", "List the appearance modes, or choose one for good");
    CLI::App& palette =
        *app.add_subcommand("palette", "Show the predefined attributes and their values");
    WatchOptions watchOptions;
    int wait = static_cast<int>(watchOptions.wait.count());
    DemoOptions demoOptions;
    ModeOptions modeOptions;
    PaletteOptions paletteOptions;
};

} // namespace

int runCommandLine(int argc, char** argv) {
    CommandLine line;
    try {
        line.app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return printAnswer(line.app, error);
        }
        printMessage(explain(line.app, error) + " (see 'zelstyle --help')");
        return ExitMisuse;
    }
    return line.run();
}

} // namespace zel::tool
