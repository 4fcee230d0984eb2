// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/HostCommands.h"

#include "tools/zelstyle/mode/Modes.h"
#include "tools/zelstyle/terminal/ColorText.h"
#include "tools/zelstyle/terminal/Message.h"
#include "tools/zelstyle/watch/LineSplitter.h"
#include "tools/zelstyle/watch/ThemedWindow.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/ZelStyle.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleScheme.h>

#include <algorithm>
#include <array>
#include <vector>

namespace zel::tool {
namespace {

constexpr std::array<std::string_view, 3> schemes{"light", "dark", "default"};
constexpr std::array<std::string_view, 2> styles{"main", cardStyleIdentifier};

std::vector<std::string_view> wordsOf(std::string_view line) {
    constexpr std::string_view blanks = " \t";
    std::vector<std::string_view> words;
    for (std::size_t at = line.find_first_not_of(blanks); at != std::string_view::npos;) {
        const std::size_t end = line.find_first_of(blanks, at);
        words.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(blanks, end);
    }
    return words;
}

/// Whether a list has the word; tells where it has not.
bool isOneOf(std::span<const std::string_view> known, std::string_view word,
             const std::string& what) {
    if (std::ranges::find(known, word) != known.end()) {
        return true;
    }
    std::string list;
    for (const std::string_view each : known) {
        list += list.empty() ? "" : ", ";
        list += each;
    }
    printMessage("unknown " + what + " '" + quotable(word) + "'; known: " + list);
    return false;
}

/// A part of the window; tells where there is none of the name.
std::shared_ptr<NSObject> requirePart(const ThemedWindow& window, std::string_view name) {
    auto part = window.partNamed(name);
    if (!part) {
        printMessage("no part '" + quotable(name) + "'; there are: " + ThemedWindow::partNames());
    }
    return part;
}

void setAppearance(std::string_view name) {
    const auto mode = modeInForce();
    if (mode && mode->identifier() != ZelStyleManagerModeIdentifierFollowSystem) {
        printMessage("the mode is " + mode->identifier().value_or("one without an identifier") +
                     "; what the system looks like counts again in follow-system");
    }
    NSApplication::sharedApplication()->setEffectiveAppearance(NSAppearance::appearanceNamed(name));
}

/// Writes the accent colour and those of the main style's values that were copies of it.
bool writeAccent(ZelStyle& style, const NSColor& color) {
    const auto secondary = style.accentColorSecondary();
    const auto components = secondary ? secondary->sRGBComponents() : std::nullopt;
    style.setAccentColor(color);
    style.setAccentColorSecondary(
        color.colorWithAlphaComponent(components ? components->alpha : 1));
    style.setControlColor(color);
    style.setNavigationBarTintColor(color);
    style.setToolbarTintColor(color);
    return true;
}

} // namespace

/// A command: its name, what follows it, what it does, and the operation for it.
struct HostCommands::Row {
    std::string_view name;
    std::string_view arguments;
    std::size_t argumentCount;
    std::string_view text;
    void (HostCommands::*operation)(Arguments);
};

const std::span<const HostCommands::Row> HostCommands::rows = [] {
    static constexpr Row table[] = {
        {"dark", "", 0, "the system turns dark", &HostCommands::turnDark},
        {"light", "", 0, "the system turns light", &HostCommands::turnLight},
        {"mode", "IDENTIFIER", 1, "the user chooses a mode, for good", &HostCommands::choose},
        {"pin", "NAME SCHEME", 2, "a part and what is below it keep to a scheme",
         &HostCommands::pin},
        {"unpin", "NAME", 1, "the part follows its parent again", &HostCommands::unpin},
        {"style", "NAME IDENTIFIER", 2, "a part and what is below it get another style",
         &HostCommands::setStyle},
        {"unstyle", "NAME", 1, "the part has its parent's style again", &HostCommands::unsetStyle},
        {"accent", "#RRGGBB", 1, "the main styles get another accent colour",
         &HostCommands::setAccent},
        {"help", "", 0, "list these commands", &HostCommands::help},
        {"quit", "", 0, "end", &HostCommands::quit},
    };
    return std::span<const Row>(table);
}();

bool HostCommands::execute(std::string_view line) {
    if (line.size() > LineSplitter::longestLine) {
        printMessage("a line of more than " + std::to_string(LineSplitter::longestLine) +
                     " bytes is no command");
        return goesOn_;
    }
    const std::vector<std::string_view> words = wordsOf(line);
    if (words.empty()) {
        return goesOn_;
    }
    const auto row = std::ranges::find(rows, words.front(), &Row::name);
    if (row == rows.end()) {
        printMessage("unknown command '" + quotable(words.front()) + "'; 'help' lists them");
    } else if (words.size() - 1 != row->argumentCount) {
        printMessage("usage: " + std::string(row->name) + (row->argumentCount > 0 ? " " : "") +
                     std::string(row->arguments));
    } else {
        (this->*row->operation)(Arguments(words).subspan(1));
    }
    return goesOn_;
}

void HostCommands::help(Arguments /*arguments*/) {
    for (const Row& row : rows) {
        printMessage(padded(std::string(row.name) + ' ' + std::string(row.arguments), 24) +
                     std::string(row.text));
    }
    printMessage("parts: " + ThemedWindow::partNames());
}

void HostCommands::turnDark(Arguments /*arguments*/) {
    setAppearance(NSAppearanceNameDarkAqua);
}

void HostCommands::turnLight(Arguments /*arguments*/) {
    setAppearance(NSAppearanceNameAqua);
}

void HostCommands::choose(Arguments arguments) {
    chooseMode(arguments[0]);
}

void HostCommands::pin(Arguments arguments) {
    const auto part = requirePart(window_, arguments[0]);
    if (part && isOneOf(schemes, arguments[1], "scheme")) {
        part->setCustomZelStyleSchemeIdentifier(arguments[1]);
    }
}

void HostCommands::unpin(Arguments arguments) {
    if (const auto part = requirePart(window_, arguments[0])) {
        part->setCustomZelStyleSchemeIdentifier(std::nullopt);
    }
}

void HostCommands::setStyle(Arguments arguments) {
    const auto part = requirePart(window_, arguments[0]);
    if (part && isOneOf(styles, arguments[1], "style")) {
        part->setCustomZelStyleIdentifier(arguments[1]);
    }
}

void HostCommands::unsetStyle(Arguments arguments) {
    if (const auto part = requirePart(window_, arguments[0])) {
        part->setCustomZelStyleIdentifier(std::nullopt);
    }
}

void HostCommands::setAccent(Arguments arguments) {
    const auto given = colorFromHex(arguments[0]);
    if (!given) {
        printMessage("'" + quotable(arguments[0]) + "' is no colour like #FF9500");
        return;
    }
    const NSColor color = NSColor::colorWithSRGBRed(given->red, given->green, given->blue, 1);
    const auto domain = ZelStyleDomain::defaultDomain();
    for (const auto& scheme : {domain->lightScheme(), domain->darkScheme()}) {
        if (const auto main = scheme->styleForIdentifier(ZelStyleIdentifierMain)) {
            main->updateStyleWithChanges(
                [&color](const auto& style) { return writeAccent(*style, color); });
        }
    }
}

void HostCommands::quit(Arguments /*arguments*/) {
    goesOn_ = false;
}

} // namespace zel::tool
