// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/CommandUser.h"

#include "tests/fuzz/Require.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <csignal>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

namespace zelfuzz {
namespace {

namespace fs = std::filesystem;

/// A file in memory in the place of a standard stream.
int replaceStream(int stream, const char* name) {
    const int file = ::memfd_create(name, MFD_CLOEXEC);
    require(file >= 0 && ::dup2(file, stream) == stream, "a stream can be replaced", name);
    return file;
}

void refill(int file, std::string_view bytes) {
    require(::ftruncate(file, 0) == 0 &&
                ::pwrite(file, bytes.data(), bytes.size(), 0) ==
                    static_cast<ssize_t>(bytes.size()) &&
                ::lseek(file, 0, SEEK_SET) == 0,
            "a file in memory can be filled");
}

constexpr const char* folders[] = {"config", "work", "home", "runtime"};

} // namespace

CommandUser::CommandUser()
    : input_(replaceStream(STDIN_FILENO, "input")),
      output_(replaceStream(STDOUT_FILENO, "output")) {
    (void)std::signal(SIGPIPE, SIG_IGN);
    for (const char* const name : folders) {
        fs::create_directory(folder_.path() / name);
    }
    ::setenv("XDG_CONFIG_HOME", (folder_.path() / "config").c_str(), 1);
    ::setenv("XDG_RUNTIME_DIR", (folder_.path() / "runtime").c_str(), 1);
    ::setenv("HOME", (folder_.path() / "home").c_str(), 1);
    for (const char* const name : {"DBUS_SESSION_BUS_ADDRESS", "LANGUAGE", "LC_ALL", "LC_MESSAGES",
                                   "LANG", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
        ::unsetenv(name);
    }
    zel::NSProcessInfo::setProcessName("zelstyle");
    // The C library's stream and not the descriptor: sanitizers and fuzzer report on that.
    std::FILE* const stream = ::open_memstream(&errorsBegin_, &errorsSize_);
    require(stream != nullptr, "errors can be kept");
    stderr = stream;
}

void CommandUser::begin(std::string_view input) const {
    for (const char* const name : folders) {
        for (const auto& entry : fs::directory_iterator(folder_.path() / name)) {
            fs::remove_all(entry.path());
        }
    }
    refill(input_, input);
    refill(output_, {});
    std::rewind(stderr);
    fs::current_path(folder_.path() / "work");
}

void CommandUser::end() const {
    fs::current_path(before_);
}

std::string CommandUser::errors() const {
    std::fflush(stderr);
    return {errorsBegin_, errorsSize_};
}

std::size_t CommandUser::outputSize() const {
    const off_t size = ::lseek(output_, 0, SEEK_END);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

void CommandUser::requireNothingElsewhere() const {
    require(fs::is_empty(folder_.path() / "home"), "nothing is written at home");
    require(fs::is_empty(folder_.path() / "runtime"), "nothing is written beside sockets");
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path() / "config")) {
        const std::string name = entry.path().lexically_relative(folder_.path() / "config");
        require(name == "zelstyle" || name == "zelstyle/defaults.conf" ||
                    name == "zelstyle/defaults.conf.lock",
                "the user's defaults are all that is written", name);
    }
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
        (void)entry;
        ++count;
    }
    require(count == std::size(folders), "nothing is written around the folders");
}

} // namespace zelfuzz
