// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace zel {
inline namespace v1 {

// What a defaults file needs of the file system. Every function may be called from any thread,
// reports failure by its result, and throws nothing but std::bad_alloc.

/// Owns a file descriptor.
class FileDescriptor {
public:
    explicit FileDescriptor(int number = -1) noexcept : number_(number) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    [[nodiscard]] int number() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }
    /// Closes it now; false where the system reports an error.
    bool reset() noexcept;

private:
    int number_;
};

/// Tells one state of a file from another. Times are in nanoseconds since the epoch.
struct FileVersion {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;
    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

FileVersion versionOf(const struct stat& status) noexcept;
/// The version of the file at a path, links followed; none where it can't be asked for.
std::optional<FileVersion> versionOf(const std::string& path) noexcept;

enum class FileState : std::uint8_t {
    Missing,
    Unreadable, ///< forbidden, no regular file, too large, or a failing disk
    Readable
};

struct FileContents {
    FileState state = FileState::Unreadable;
    std::string text;
    struct stat status {}; ///< from before the text was read
};

/// Larger files are taken for damaged: they are neither read nor written.
inline constexpr std::size_t kLargestDefaultsFile = std::size_t{8} << 20;

/// Reads a whole regular file. Never waits for a pipe or a device.
FileContents readFile(const std::string& path);

/// The path of the file that a path stands for, once symbolic links in its last component are
/// followed, whether that file exists or not. None for a ring of links.
std::optional<std::string> followLinks(const std::string& path);

/// The part of a path before its last slash.
std::string folderOf(const std::string& path);

/// Creates a folder and the missing ones above it, for the user alone.
bool createFolders(const std::string& folder);

/// Makes a file durable that somebody else wrote, links followed.
bool syncWritten(const std::string& path);

/// Makes the entries of a folder durable.
bool syncFolder(const std::string& folder);

/// Gives the file a new text, whole or not at all, and returns when that is durable. It keeps the
/// mode and owner of its predecessor; a file without one is for the user alone.
/// The caller holds the file's lock. A leftover of a writer that was killed is overwritten.
bool replaceFile(const std::string& path, std::string_view text, const struct stat* predecessor);

/// An advisory lock among processes and threads, on a file of its own that stays where it is:
/// the guarded file is replaced with each write, and a lock on it would guard its past.
class FileLock {
public:
    /// Waits for the lock until the deadline.
    FileLock(const std::string& path, std::chrono::steady_clock::time_point deadline);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    [[nodiscard]] bool held() const noexcept { return static_cast<bool>(file_); }

private:
    FileDescriptor file_;
};

} // namespace v1
} // namespace zel
