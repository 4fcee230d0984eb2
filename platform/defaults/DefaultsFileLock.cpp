// SPDX-License-Identifier: Apache-2.0
#include "platform/defaults/DefaultsFileSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zel {
inline namespace v1 {
namespace {

using Clock = std::chrono::steady_clock;

/// A waiter asks for the lock at least this often, and never more often than that.
constexpr std::chrono::microseconds kLongestPoll{2000};
constexpr std::chrono::microseconds kShortestPoll{100};

/// How long a waiter sleeps before it asks again. Deliberate: the longer it has waited, the less,
/// although one would rather expect the opposite. Nobody queues for the lock; whoever asks first
/// after its release has it, so that asking more often is what gets the oldest waiter its turn.
std::chrono::microseconds pollAfter(Clock::duration waited) {
    const auto halvings = waited / std::chrono::milliseconds{128};
    return std::max(kLongestPoll / (1 << std::min<Clock::rep>(halvings, 10)), kShortestPoll);
}

/// When this process last let a lock go.
std::atomic<Clock::rep>& lastRelease() {
    static std::atomic<Clock::rep> instant{0};
    return instant;
}

/// Whoever writes in quick succession would hold the lock nearly all the time, and others, who
/// only ask now and then, would never find it free: it lets them ask once in between.
void giveOthersATurn() {
    const Clock::time_point released{Clock::duration{lastRelease().load()}};
    if (Clock::now() - released < std::chrono::milliseconds{50}) {
        std::this_thread::sleep_for(kLongestPoll * 3 / 2);
    }
}

/// Makes the lock file anew. Root, who may be at work on a user's file, leaves it to the user, who
/// could lock it never again otherwise; one that exists already may be anybody's and stays as it
/// is.
FileDescriptor createLockFile(const std::string& path, int flags) {
    FileDescriptor file(::open(path.c_str(), flags | O_CREAT | O_EXCL, 0600));
    struct stat folder {};
    if (file && ::geteuid() == 0 && ::stat(folderOf(path).c_str(), &folder) == 0) {
        [[maybe_unused]] const int refused = ::fchown(file.number(), folder.st_uid, folder.st_gid);
    }
    return file;
}

FileDescriptor openLockFile(const std::string& path) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    FileDescriptor file = createLockFile(path, flags);
    if (!file) {
        file = FileDescriptor(::open(path.c_str(), flags | O_CREAT, 0600));
    }
    struct stat status {};
    if (!file || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return FileDescriptor();
    }
    return file;
}

/// Somebody may have deleted the lock file: then a lock on it excludes nobody any more.
bool isStillThere(const FileDescriptor& file, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(file.number(), &opened) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

FileLock::FileLock(const std::string& path, Clock::time_point deadline) {
    giveOthersATurn();
    const Clock::time_point start = Clock::now();
    for (FileDescriptor file = openLockFile(path); file; file = openLockFile(path)) {
        while (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
            const bool waiting = errno == EWOULDBLOCK || errno == EINTR;
            const Clock::time_point now = Clock::now();
            if (!waiting || now >= deadline) {
                return;
            }
            std::this_thread::sleep_for(pollAfter(now - start));
        }
        if (isStillThere(file, path)) {
            file_ = std::move(file);
            return;
        }
        if (Clock::now() >= deadline) {
            return;
        }
    }
}

FileLock::~FileLock() {
    if (held()) {
        // Closing alone would not do where another thread has just forked: the child's copy of the
        // descriptor would go on holding the lock.
        ::flock(file_.number(), LOCK_UN);
        lastRelease().store(Clock::now().time_since_epoch().count());
    }
}

} // namespace v1
} // namespace zel
