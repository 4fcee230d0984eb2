// SPDX-License-Identifier: Apache-2.0
// The command zelstyle, in this process, with a user of its own. An input is the arguments, one in
// each line, then behind a line "%%" the bytes of the standard input. A slash in an argument
// becomes a percent sign, so that no output goes anywhere but into the folder that the command runs
// in.
#include "tests/fuzz/CommandUser.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Script.h"

#include "tools/zelstyle/CommandLine.h"
#include "tools/zelstyle/Options.h"

#include <ZelStyleKit/NSApplication.h>
#include <ZelStyleKit/NSMainQueue.h>
#include <ZelStyleKit/NSUserDefaults.h>
#include <ZelStyleKit/ZelStyleDomain.h>
#include <ZelStyleKit/ZelStyleManager.h>
#include <ZelStyleKit/ZelStyleSystemAppearance.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zelfuzz {
namespace {

std::vector<std::string> argumentsOf(std::string_view text) {
    constexpr std::size_t most = 32;
    std::vector<std::string> arguments{"zelstyle"};
    for (Script script(text); arguments.size() < most && script.nextLine();) {
        std::string argument = script.textToLineEnd();
        argument.resize(std::min(argument.find('\0'), argument.size()));
        std::ranges::replace(argument, '/', '%');
        arguments.push_back(std::move(argument));
    }
    return arguments;
}

/// Leaves the library as a process finds it: no domain, no mode, a light system.
void freshen() {
    const auto manager = zel::ZelStyleManager::sharedStyleManager();
    while (!manager->modes().empty()) {
        manager->removeMode(manager->modes().front());
    }
    zel::NSUserDefaults::standardUserDefaults().setStore(nullptr);
    zel::ZelStyleDomain::domainForIdentifier("_reset");
    zel::NSApplication::sharedApplication()->setEffectiveAppearance(
        zel::NSAppearance::appearanceNamed(zel::NSAppearanceNameAqua));
    zel::ZelStyleSystemAppearance::sharedSystemAppearance()->determineFromSystemAppearance();
    while (zel::NSMainQueue::mainQueue().drain() > 0) {
    }
}

/// Ends an event loop that nothing else ends, such as one that waits for a portal, by the signal
/// that a user would send: after so many turns, of which each line of the input takes one.
class LastTurn {
public:
    explicit LastTurn(std::size_t turns) : left_(std::make_shared<std::size_t>(turns)) {
        queue(left_);
    }
    LastTurn(const LastTurn&) = delete;
    LastTurn& operator=(const LastTurn&) = delete;
    ~LastTurn() { *left_ = isOver; }

private:
    static constexpr std::size_t isOver = SIZE_MAX;

    static void queue(const std::shared_ptr<std::size_t>& left) {
        zel::NSMainQueue::mainQueue().async([left] {
            if (*left == 0) {
                (void)std::raise(SIGTERM);
            } else if (*left != isOver) {
                --*left;
                queue(left);
            }
        });
    }

    const std::shared_ptr<std::size_t> left_;
};

std::size_t turnsFor(std::string_view input) {
    return static_cast<std::size_t>(std::ranges::count(input, '\n')) + input.size() / 1024 + 64;
}

int runCommand(std::vector<std::string> arguments, std::size_t turns) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const LastTurn lastTurn(turns);
    return zel::tool::runCommandLine(static_cast<int>(arguments.size()), pointers.data());
}

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

/// Every message is a line of its own that says who speaks, and moves no cursor.
std::size_t countOfMessages(std::string_view errors) {
    std::size_t count = 0;
    for (; !errors.empty(); ++count) {
        const std::size_t end = errors.find('\n');
        require(end != std::string_view::npos, "a message has an end", errors);
        const std::string_view line = errors.substr(0, end);
        require(line.starts_with("zelstyle: ") && line.size() > 10, "a message says who speaks",
                line);
        require(std::ranges::none_of(line, isControl), "a message is one plain line", line);
        errors.remove_prefix(end + 1);
    }
    return count;
}

void check(int code, const CommandUser& user) {
    const std::string errors = user.errors();
    const std::size_t messages = countOfMessages(errors);
    switch (code) {
    case zel::tool::ExitDone:
        break;
    case zel::tool::ExitFailed: // the folder that it runs in can be written
        require(messages == 1 && errors.starts_with("zelstyle: cannot write '"),
                "a failure is that of a file's name", errors);
        break;
    default:
        require(code == zel::tool::ExitMisuse, "the exit code is one of three", errors);
        require(messages == 1, "misuse is told in one line", errors);
        require(user.outputSize() == 0, "misuse prints nothing", errors);
    }
    user.requireNothingElsewhere();
}

} // namespace
} // namespace zelfuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelfuzz;
    static const CommandUser user;
    const TwoParts parts({reinterpret_cast<const char*>(data), size});
    user.begin(parts.second);
    freshen();
    const int code = runCommand(argumentsOf(parts.first), turnsFor(parts.second));
    freshen();
    user.end();
    check(code, user);
    return 0;
}
