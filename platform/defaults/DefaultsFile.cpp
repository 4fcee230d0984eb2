// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFile.h"

#include "platform/defaults/DefaultsFilePath.h"

#include <ctime>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zel {
inline namespace v1 {
namespace {

constexpr std::chrono::seconds kLongestWait{2};

/// Time stamps are only as fine as the file system keeps them, which is two seconds at worst.
bool hasSettled(const struct stat& status) {
    return std::time(nullptr) - status.st_mtime > 2;
}

bool mayWrite(const std::string& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

/// Whether the file says already what is to be written, so that nothing needs to be.
bool isAlreadySo(const FileContents& file, const std::optional<NSUserDefaultsValue>& value,
                 std::string_view key) {
    return file.state == FileState::Missing
               ? !value
               : file.state == FileState::Readable &&
                     editDefaultsFile(file.text, key, value) == file.text;
}

/// Writes one key's value into the file, whose lock is held.
bool writeLocked(const std::string& path, const std::optional<NSUserDefaultsValue>& value,
                 std::string_view key) {
    const FileContents old = readFile(path);
    const bool exists = old.state == FileState::Readable;
    if (old.state == FileState::Unreadable || (exists && !mayWrite(path))) {
        return false;
    }
    const std::string text = editDefaultsFile(old.text, key, value);
    return text.size() <= kLargestDefaultsFile &&
           replaceFile(path, text, exists ? &old.status : nullptr);
}

bool write(const std::optional<NSUserDefaultsValue>& value, std::string_view key) {
    const auto path = defaultsFilePath();
    if (!path) {
        return false;
    }
    const FileContents before = readFile(*path);
    if (isAlreadySo(before, value, key)) {
        // Whoever wrote it may not have come to making it durable.
        return before.state == FileState::Missing || syncWritten(*path);
    }
    // Only the application's own folder is made; one that a link leads to may be on a disk that is
    // not there at the moment.
    if (before.state == FileState::Unreadable || !createFolders(folderOf(*path))) {
        return false;
    }
    const auto file = followLinks(*path);
    if (!file) {
        return false;
    }
    const FileLock lock(*file + ".lock", std::chrono::steady_clock::now() + kLongestWait);
    return lock.held() && writeLocked(*file, value, key);
}

} // namespace

const DefaultsFile::Reading* DefaultsFile::current() {
    const auto path = defaultsFilePath();
    if (!path) {
        return nullptr;
    }
    if (reading_ && reading_->settled && versionOf(*path) == reading_->version) {
        return &*reading_;
    }
    reading_.reset();
    const FileContents contents = readFile(*path);
    if (contents.state != FileState::Readable) {
        return nullptr;
    }
    reading_.emplace(Reading{versionOf(contents.status), hasSettled(contents.status),
                             parseDefaultsFile(contents.text)});
    return &*reading_;
}

std::optional<NSUserDefaultsValue> DefaultsFile::objectForKey(std::string_view key) {
    try {
        const std::lock_guard guard(mutex_);
        const Reading* const reading = current();
        if (reading == nullptr) {
            return std::nullopt;
        }
        const auto found = reading->entries.find(key);
        return found == reading->entries.end() ? std::nullopt : std::optional(found->second);
    } catch (...) { // out of memory
        return std::nullopt;
    }
}

bool DefaultsFile::setObject(const std::optional<NSUserDefaultsValue>& value,
                             std::string_view forKey) {
    try {
        return write(value, forKey);
    } catch (...) { // out of memory
        return false;
    }
}

} // namespace v1
} // namespace zel
