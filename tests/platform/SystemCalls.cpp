// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/SystemCalls.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zel_tests {
namespace {

/// Never destroyed: files are written to the very end of the process.
Intervention::AskOfDescriptor& interventionFor(SystemCall call) {
    using All =
        std::array<Intervention::AskOfDescriptor, static_cast<std::size_t>(SystemCall::Count)>;
    static auto& all = *new All;
    return all[static_cast<std::size_t>(call)];
}

bool isRefused(SystemCall call, int descriptor) {
    auto& asked = interventionFor(call);
    if (!asked) {
        return false;
    }
    auto ask = std::exchange(asked, nullptr);
    const int error = ask(descriptor);
    asked = std::move(ask);
    if (error != 0) {
        errno = error;
    }
    return error != 0;
}

} // namespace

Intervention::Intervention(SystemCall call, AskOfDescriptor ask) : call_(call) {
    interventionFor(call) = std::move(ask);
}

Intervention::Intervention(SystemCall call, const Ask& ask)
    : Intervention(call, [ask](int /*descriptor*/) { return ask(); }) {}

Intervention::~Intervention() {
    interventionFor(call_) = nullptr;
}

} // namespace zel_tests

using zel_tests::isRefused;
using zel_tests::SystemCall;

extern "C" {

int flock(int descriptor, int operation) noexcept {
    return isRefused(SystemCall::Flock, descriptor)
               ? -1
               : static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

int fstat(int descriptor, struct stat* status) noexcept {
    return isRefused(SystemCall::Fstat, descriptor)
               ? -1
               : static_cast<int>(::syscall(SYS_fstat, descriptor, status));
}

int fsync(int descriptor) {
    return isRefused(SystemCall::Fsync, descriptor)
               ? -1
               : static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int mkdir(const char* path, mode_t mode) noexcept {
    return isRefused(SystemCall::Mkdir, -1)
               ? -1
               : static_cast<int>(::syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

int open(const char* path, int flags, ...) {
    std::va_list further;
    va_start(further, flags);
    const mode_t mode =
        (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(further, mode_t) : 0;
    va_end(further);
    return isRefused(SystemCall::Open, -1)
               ? -1
               : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

ssize_t read(int descriptor, void* to, std::size_t size) {
    return isRefused(SystemCall::Read, descriptor) ? -1 : ::syscall(SYS_read, descriptor, to, size);
}

ssize_t readlink(const char* path, char* to, std::size_t size) noexcept {
    return isRefused(SystemCall::Readlink, -1)
               ? -1
               : ::syscall(SYS_readlinkat, AT_FDCWD, path, to, size);
}

ssize_t write(int descriptor, const void* from, std::size_t size) {
    return isRefused(SystemCall::Write, descriptor) ? -1
                                                    : ::syscall(SYS_write, descriptor, from, size);
}

} // extern "C"
