// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/InputSource.h"

#include "tools/zelstyle/Options.h"
#include "tools/zelstyle/terminal/Message.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace zel::tool {

// While a line waits nothing more is read, so that what a fast writer sends stays in its pipe.
int InputSource::fileDescriptor() const {
    return atEnd_ || lines_.hasLine() ? -1 : STDIN_FILENO;
}

short InputSource::events() const {
    return POLLIN;
}

std::optional<std::chrono::microseconds> InputSource::nextTimeout() const {
    return atEnd_ || lines_.hasLine() ? std::optional(std::chrono::microseconds(0)) : std::nullopt;
}

bool InputSource::process(short ready) {
    if (ready != 0) {
        read();
    }
    const auto line = lines_.next();
    return line ? commands_.execute(*line) : !atEnd_;
}

void InputSource::read() {
    std::array<char, 4096> bytes;
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count > 0) {
        lines_.feed({bytes.data(), static_cast<std::size_t>(count)});
        return;
    }
    if (count < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK)) {
        return;
    }
    if (count < 0) {
        printMessage("cannot read standard input: " + std::generic_category().message(errno));
        exitCode_ = ExitFailed;
    }
    atEnd_ = true;
    lines_.finish();
}

} // namespace zel::tool
