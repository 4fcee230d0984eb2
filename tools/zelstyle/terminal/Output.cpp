// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/terminal/Output.h"

#include "tools/zelstyle/terminal/Message.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace zel::tool {
namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value != '\0';
}

bool isDumbTerminal() {
    const char* terminal = std::getenv("TERM");
    return terminal && std::string_view(terminal) == "dumb";
}

} // namespace

void Output::write(std::string_view text) {
    while (!text.empty() && error_ == 0) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            // Whoever shares the descriptor made it non-blocking.
            pollfd ready{STDOUT_FILENO, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
}

int Output::report() const {
    if (error_ == 0 || error_ == EPIPE) {
        return ExitDone;
    }
    printMessage("cannot write to standard output: " + std::generic_category().message(error_));
    return ExitFailed;
}

bool Output::showsColors(ColorChoice choice) {
    switch (choice) {
    case ColorChoice::Always:
        return true;
    case ColorChoice::Never:
        return false;
    case ColorChoice::Auto:
        break;
    }
    return ::isatty(STDOUT_FILENO) == 1 && !isSet("NO_COLOR") && !isDumbTerminal();
}

} // namespace zel::tool
