// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFile.h"

#include "platform/defaults/DefaultsText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zel::inline v1 {
namespace {

using Path = std::filesystem::path;
using Status = struct stat;

/// Larger files are taken for damaged: they are neither read nor written.
constexpr std::size_t largestFile = std::size_t{8} << 20;
constexpr std::chrono::seconds longestWait{2};
constexpr std::chrono::milliseconds betweenAttempts{2};

/// Repeats a system call while signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Owns a file descriptor. Where the file could not be opened, every call on it fails.
struct Descriptor {
    /// Waits for nobody at the other end of a pipe. What it creates is for the user alone.
    Descriptor(const Path& path, int flags)
        : number(uninterrupted([&] {
              return ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600);
          })) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            ::close(number);
        }
    }
    int number;
};

/// All zero where it can't be asked for.
Status statusOf(const Descriptor& file) {
    Status status{};
    return ::fstat(file.number, &status) == 0 ? status : Status{};
}

bool sync(const Descriptor& file) {
#if defined(F_FULLFSYNC)
    // Here fsync alone stops at the disk's cache. Not every disk can do more.
    if (::fcntl(file.number, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return uninterrupted([&] { return ::fsync(file.number); }) == 0;
}

/// Makes the names in a folder durable. Some file systems have no such thing as an unwritten
/// folder, and say that they can't.
bool syncFolder(const Path& folder) {
    return sync(Descriptor(folder, O_RDONLY | O_DIRECTORY)) || errno == EINVAL || errno == ENOTSUP;
}

bool createFolders(const Path& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) {
        return true;
    }
    // Another process may be doing the same right now.
    return createFolders(folder.parent_path()) &&
           (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) &&
           syncFolder(folder.parent_path());
}

struct Contents {
    std::string text;
    Status status{}; ///< all zero where there is no file
    [[nodiscard]] bool exists() const { return status.st_mode != 0; }
};

bool readText(const Descriptor& file, std::string& text) {
    constexpr std::size_t step = std::size_t{64} << 10;
    ssize_t count = 1;
    while (count > 0 && text.size() <= largestFile) {
        const std::size_t filled = text.size();
        text.resize(filled + step);
        count = uninterrupted([&] { return ::read(file.number, text.data() + filled, step); });
        text.resize(filled + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return count == 0;
}

/// What is at a path, links followed. None where that is forbidden, no regular file, too large, or
/// on a failing disk.
std::optional<Contents> readFile(const Path& path) {
    Contents contents;
    // Looked at before it is opened: opening alone can move a device or wake a pipe's writer.
    if (::stat(path.c_str(), &contents.status) != 0) {
        return errno == ENOENT ? std::optional(Contents()) : std::nullopt;
    }
    if (!S_ISREG(contents.status.st_mode)) {
        return std::nullopt;
    }
    const Descriptor file(path, O_RDONLY);
    contents.status = statusOf(file);
    const bool isRead = S_ISREG(contents.status.st_mode) && readText(file, contents.text);
    return isRead ? std::optional(std::move(contents)) : std::nullopt;
}

/// The file to write for a path, whether it exists or not: the one that a link leads to, so that
/// the link stays. None where that can't be found out, or where it is a further link to nothing.
std::optional<Path> behindLink(const Path& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) {
        return path;
    }
    const Path target = std::filesystem::read_symlink(path, error);
    if (error) {
        return std::nullopt;
    }
    Path file = std::filesystem::weakly_canonical(path.parent_path() / target, error);
    return error || std::filesystem::is_symlink(file, error) ? std::nullopt : std::optional(file);
}

/// Whether an open file is the one at the path.
bool isAt(const Path& path, const Status& opened) {
    Status named{};
    return ::lstat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

/// A lock among processes and threads, on a file of its own that stays where it is: the guarded
/// file is replaced with each write, and a lock on it would guard its past. None where it can't be
/// acquired, or not in time.
std::optional<Descriptor> acquireLock(const Path& path) {
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    while (std::chrono::steady_clock::now() < deadline) {
        Descriptor file(path, O_RDWR | O_CREAT | O_NOFOLLOW);
        const Status status = statusOf(file);
        if (!S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        if (uninterrupted([&] { return ::flock(file.number, LOCK_EX | LOCK_NB); }) == 0) {
            if (isAt(path, status)) { // else deleted meanwhile: a lock on it excludes nobody
                return file;
            }
        } else if (errno != EWOULDBLOCK) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(betweenAttempts);
    }
    return std::nullopt;
}

/// Whether a file may be replaced, there or not. In another user's folder, that user could not
/// read it any more; and a file that may not be written isn't replaced either.
bool mayReplace(const Path& path, const Contents& old) {
    Status folder{};
    const uid_t user = ::geteuid();
    return ::stat(path.parent_path().c_str(), &folder) == 0 && folder.st_uid == user &&
           (!old.exists() || (old.status.st_uid == user && (old.status.st_mode & S_IWUSR) != 0));
}

bool writeText(const Descriptor& file, std::string_view text) {
    ssize_t count = 1;
    while (count > 0 && !text.empty()) {
        count = uninterrupted([&] { return ::write(file.number, text.data(), text.size()); });
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return text.empty();
}

/// Gives the file a new text, whole or not at all, and returns when that is durable. Its lock is
/// held.
bool replaceFile(const Path& path, std::string_view text, const Contents& old) {
    const Path folder = path.parent_path();
    const Path temporary = Path(path).concat(".tmp");
    ::unlink(temporary.c_str()); // a killed writer's
    const Descriptor file(temporary, O_WRONLY | O_CREAT | O_EXCL);
    if (old.exists()) {
        // In another group, the rights of the old one's group would go to other people. A file
        // system without modes refuses; the file is then for the user alone.
        const bool sameGroup = statusOf(file).st_gid == old.status.st_gid;
        ::fchmod(file.number, old.status.st_mode & (sameGroup ? 0777 : 0700));
    }
    if (writeText(file, text) && sync(file) && std::rename(temporary.c_str(), path.c_str()) == 0) {
        return syncFolder(folder);
    }
    ::unlink(temporary.c_str());
    return false;
}

/// Writes one key's value into what the file holds by now. Its lock is held.
bool writeLocked(const Path& path, const std::optional<NSUserDefaultsValue>& value,
                 std::string_view key) {
    const auto old = readFile(path);
    const std::string text = old ? editDefaultsText(old->text, key, value) : std::string();
    return old && text.size() <= largestFile && replaceFile(path, text, *old);
}

} // namespace

std::optional<NSUserDefaultsValue> DefaultsFile::objectForKey(std::string_view key) {
    const auto path = defaultsFilePath();
    const auto contents = path ? readFile(*path) : std::nullopt;
    DefaultsEntries entries = parseDefaultsText(contents ? contents->text : std::string());
    const auto found = entries.find(key);
    return found == entries.end() ? std::nullopt : std::optional(std::move(found->second));
}

bool DefaultsFile::setObject(const std::optional<NSUserDefaultsValue>& value,
                             std::string_view forKey) {
    const auto path = defaultsFilePath();
    const auto before = path ? readFile(*path) : std::nullopt;
    const auto file = before ? behindLink(*path) : std::nullopt;
    if (!file) {
        return false;
    }
    if (editDefaultsText(before->text, forKey, value) == before->text) {
        // Whoever wrote it may not have come to making it durable.
        return !before->exists() ||
               (sync(Descriptor(*file, O_RDONLY)) && syncFolder(file->parent_path()));
    }
    // Only the application's own folder is made; one that a link leads to may be on a disk that is
    // not there at the moment.
    if (!createFolders(path->parent_path()) || !mayReplace(*file, *before)) {
        return false;
    }
    const auto lock = acquireLock(Path(*file).concat(".lock"));
    const bool written = lock && writeLocked(*file, value, forKey);
    if (lock) {
        // Closing alone would not do where another thread has just forked: the child's copy of the
        // descriptor would go on holding the lock.
        ::flock(lock->number, LOCK_UN);
    }
    return written;
}

} // namespace zel::inline v1
