// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zel::tool {

class ThemedWindow;

/// Lines of text that play the host, the system and the user of a themed window.
/// Refers to: the window. Threads: the main thread, on which deliveries follow.
/// Failure: a line that asks for what there is not gets one line on standard error and does
/// nothing.
class HostCommands {
public:
    explicit HostCommands(ThemedWindow& window) : window_(window) {}

    /// Does what a line says; an empty one says nothing. False once it says to quit.
    bool execute(std::string_view line);

private:
    using Arguments = std::span<const std::string_view>;
    struct Row;
    static const std::span<const Row> rows;

    void help(Arguments arguments);
    void turnDark(Arguments arguments);
    void turnLight(Arguments arguments);
    void choose(Arguments arguments);
    void pin(Arguments arguments);
    void unpin(Arguments arguments);
    void setStyle(Arguments arguments);
    void unsetStyle(Arguments arguments);
    void setAccent(Arguments arguments);
    void quit(Arguments arguments);

    ThemedWindow& window_;
    bool goesOn_ = true;
};

} // namespace zel::tool
