// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/watch/SelfPipe.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace zel::tool {

SelfPipe::SelfPipe() {
    if (::pipe(ends_.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    for (const int end : ends_) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
}

SelfPipe::~SelfPipe() {
    for (const int end : ends_) {
        ::close(end);
    }
}

void SelfPipe::signal() const noexcept {
    const int before = errno;
    const char byte = 0;
    // A full pipe is readable already.
    [[maybe_unused]] const auto written = ::write(ends_[1], &byte, 1);
    errno = before;
}

void SelfPipe::clear() const noexcept {
    std::array<char, 64> bytes;
    while (::read(ends_[0], bytes.data(), bytes.size()) > 0) {
    }
}

} // namespace zel::tool
