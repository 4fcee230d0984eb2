// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/NSProcessInfo.h>

#include "platform/locks/PrivateLock.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>

#include <unistd.h>

namespace zel::inline v1 {
namespace {

struct ProcessInfo {
    PrivateLock lock;
    std::string hostName ZEL_GUARDED_BY(lock);                   ///< empty: not named
    std::optional<std::string> programName ZEL_GUARDED_BY(lock); ///< looked up once
    NSOperatingSystemVersion version ZEL_GUARDED_BY(lock) = {10, 14, 0};
};

/// Never destroyed: objects that live as long as the process ask while they end.
ProcessInfo& processInfo() {
    static ProcessInfo& info = *std::make_unique<ProcessInfo>().release();
    return info;
}

std::string lastComponent(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1)); // npos + 1 is 0: no slash
}

#if defined(__linux__)
/// The path of the running program. The system marks one whose file was replaced or deleted since,
/// by an update say; the application's name is without the mark.
std::string programPath() {
    constexpr std::string_view deletedMark = " (deleted)";
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return {};
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            break;
        }
        path.resize(path.size() * 2);
    }
    if (path.ends_with(deletedMark) && ::access(path.c_str(), F_OK) != 0) {
        path.resize(path.size() - deletedMark.size());
    }
    return path;
}
#endif

/// What the program was called as.
std::string invocationName() {
#if defined(__GLIBC__)
    return program_invocation_short_name;
#elif defined(__APPLE__) || defined(__FreeBSD__) || defined(__NetBSD__) || defined(__OpenBSD__)
    const char* const name = ::getprogname();
    return name == nullptr ? std::string() : name;
#else
    return {};
#endif
}

std::string programName() {
#if defined(__linux__)
    std::string name = lastComponent(programPath());
    if (!name.empty()) {
        return name;
    }
#endif
    return lastComponent(invocationName());
}

} // namespace

std::string NSProcessInfo::processName() {
    ProcessInfo& info = processInfo();
    const PrivateGuard guard(info.lock);
    if (!info.hostName.empty()) {
        return info.hostName;
    }
    if (!info.programName) {
        info.programName = programName();
    }
    return *info.programName;
}

void NSProcessInfo::setProcessName(std::string_view name) {
    ProcessInfo& info = processInfo();
    std::string copy(name);
    const PrivateGuard guard(info.lock);
    info.hostName.swap(copy);
}

bool NSProcessInfo::isOperatingSystemAtLeastVersion(
    const NSOperatingSystemVersion& version) noexcept {
    ProcessInfo& info = processInfo();
    const PrivateGuard guard(info.lock);
    return info.version >= version;
}

void NSProcessInfo::setOperatingSystemVersion(const NSOperatingSystemVersion& version) noexcept {
    ProcessInfo& info = processInfo();
    const PrivateGuard guard(info.lock);
    info.version = version;
}

} // namespace zel::inline v1
