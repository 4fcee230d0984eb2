// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFileSystem.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zel {
inline namespace v1 {
namespace {

/// Repeats a system call for as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

FileDescriptor openFile(const std::string& path, int flags, mode_t mode = 0) {
    return FileDescriptor(
        uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); }));
}

std::int64_t nanoseconds(const struct timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

/// Reads up to one byte more than is allowed, so that a file that has grown meanwhile is noticed.
bool readAll(const FileDescriptor& file, std::string& text) {
    std::size_t filled = 0;
    for (;;) {
        if (filled == text.size()) {
            return false;
        }
        const ssize_t count = uninterrupted(
            [&] { return ::read(file.number(), text.data() + filled, text.size() - filled); });
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            text.resize(filled);
            return true;
        }
        filled += static_cast<std::size_t>(count);
    }
}

bool writeAll(const FileDescriptor& file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(file.number(), text.data(), text.size()); });
        if (count <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Makes the new file its predecessor's like. Where the owner or group can't be kept, neither are
/// the group's and others' rights: they would go to other people. A file system without modes
/// refuses; the file then stays as it was created, for its user alone.
void inheritAttributes(const FileDescriptor& file, const struct stat* predecessor) {
    struct stat own {};
    mode_t mode = 0600;
    if (predecessor != nullptr && ::fstat(file.number(), &own) == 0) {
        mode = predecessor->st_mode & 0777;
        const bool same = own.st_uid == predecessor->st_uid && own.st_gid == predecessor->st_gid;
        if (!same && ::fchown(file.number(), predecessor->st_uid, predecessor->st_gid) != 0) {
            mode &= 0700;
        }
    }
    [[maybe_unused]] const int refused = ::fchmod(file.number(), mode);
}

bool syncFile(const FileDescriptor& file) {
#if defined(F_FULLFSYNC)
    // Here fsync alone stops at the disk's cache. Not every disk can do more.
    if (::fcntl(file.number(), F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return uninterrupted([&] { return ::fsync(file.number()); }) == 0;
}

} // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : number_(std::exchange(other.number_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        reset();
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

bool FileDescriptor::reset() noexcept {
    const int number = std::exchange(number_, -1);
    // Not repeated when interrupted: the descriptor is gone by then, and may be another's already.
    return number < 0 || ::close(number) == 0 || errno == EINTR;
}

FileVersion versionOf(const struct stat& status) noexcept {
#if defined(__APPLE__)
    const auto& modified = status.st_mtimespec;
    const auto& changed = status.st_ctimespec;
#else
    const auto& modified = status.st_mtim;
    const auto& changed = status.st_ctim;
#endif
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::int64_t>(status.st_size), nanoseconds(modified), nanoseconds(changed)};
}

std::optional<FileVersion> versionOf(const std::string& path) noexcept {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return versionOf(status);
}

FileContents readFile(const std::string& path) {
    FileContents contents;
    // Looked at before it is opened: opening alone can move a device or wake a pipe's writer.
    if (::stat(path.c_str(), &contents.status) != 0) {
        contents.state = errno == ENOENT ? FileState::Missing : FileState::Unreadable;
        return contents;
    }
    if (!S_ISREG(contents.status.st_mode)) {
        return contents;
    }
    const FileDescriptor file = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file || ::fstat(file.number(), &contents.status) != 0) {
        return contents;
    }
    const auto size = static_cast<std::uint64_t>(contents.status.st_size);
    if (!S_ISREG(contents.status.st_mode) || size > kLargestDefaultsFile) {
        return contents;
    }
    contents.text.resize(static_cast<std::size_t>(size) + 1);
    if (readAll(file, contents.text)) {
        contents.state = FileState::Readable;
    }
    return contents;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::optional<std::string> followLinks(const std::string& path) {
    std::string current = path;
    // The system follows 40 links; one time more, to see what the last of them leads to.
    for (int seen = 0; seen <= 40; ++seen) {
        struct stat status {};
        if (::lstat(current.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
            return current;
        }
        std::string target(4096, '\0'); // PATH_MAX; a longer one could not be opened either
        const ssize_t length = ::readlink(current.c_str(), target.data(), target.size());
        if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
            return std::nullopt;
        }
        target.resize(static_cast<std::size_t>(length));
        current = target.front() == '/' ? target : folderOf(current).append(1, '/').append(target);
    }
    return std::nullopt;
}

bool syncFolder(const std::string& folder) {
    const FileDescriptor file = openFile(folder, O_RDONLY | O_DIRECTORY);
    // Some file systems have no such thing as an unwritten folder, and say that they can't.
    return file && (syncFile(file) || errno == EINVAL || errno == ENOTSUP);
}

bool syncWritten(const std::string& path) {
    const auto written = followLinks(path);
    if (!written) {
        return false;
    }
    const FileDescriptor file = openFile(*written, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    return file && syncFile(file) && syncFolder(folderOf(*written));
}

bool createFolders(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0) {
        return S_ISDIR(status.st_mode);
    }
    if (errno != ENOENT || folder == "/" || !createFolders(folderOf(folder))) {
        return false;
    }
    // Another process may be doing the same right now.
    const bool created = ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
    return created && syncFolder(folderOf(folder));
}

bool replaceFile(const std::string& path, std::string_view text, const struct stat* predecessor) {
    const std::string temporary = path + ".tmp";
    ::unlink(temporary.c_str());
    FileDescriptor file = openFile(temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!file) {
        return false;
    }
    inheritAttributes(file, predecessor);
    if (!writeAll(file, text) || !syncFile(file) || !file.reset() ||
        std::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    return syncFolder(folderOf(path));
}

} // namespace v1
} // namespace zel
