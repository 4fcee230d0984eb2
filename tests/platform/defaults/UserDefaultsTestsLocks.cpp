// SPDX-License-Identifier: Apache-2.0
#include "UserDefaultsTestsFolder.h"
#include "tests/platform/SystemCalls.h"

#include "platform/defaults/DefaultsFileSystem.h"

#include <cerrno>
#include <chrono>

namespace zel_tests {
namespace {

using zel::NSUserDefaults;

/// Locks that can't be had, and those that are lost as they are taken.
struct DefaultsFileLocks : UserDefaultsFolder {
    [[nodiscard]] std::string lockFile() const { return file() + ".lock"; }
};

TEST_F(DefaultsFileLocks, AFileSystemWithoutLocksIsNotWrittenAndNobodyWaits) {
    write("k = \"old\"\n");
    int attempts = 0;
    const Intervention fault(SystemCall::Flock, [&] {
        ++attempts;
        return ENOLCK;
    });
    EXPECT_FALSE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(text(), "k = \"old\"\n");
}

TEST_F(DefaultsFileLocks, ALockFileThatCannotBeAskedForItsStateIsNoLockAndNobodyWaits) {
    write("k = \"old\"\n");
    int attempts = 0;
    const Intervention fault(SystemCall::Fstat, [&](int descriptor) {
        const bool asked = pathOf(descriptor) == lockFile();
        attempts += asked ? 1 : 0;
        return asked ? EIO : 0;
    });
    EXPECT_FALSE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(text(), "k = \"old\"\n");
}

TEST_F(DefaultsFileLocks, ALockFileThatAnotherReplacesIsLockedAnew) {
    write("k = \"old\"\n");
    int replaced = 0;
    const Intervention race(SystemCall::Flock, [&] {
        if (++replaced <= 2) {
            std::filesystem::rename(lockFile(), lockFile() + std::to_string(replaced));
            std::ofstream(lockFile()) << "";
        }
        return 0;
    });
    EXPECT_TRUE(NSUserDefaults().setObject("new", "k"));
    EXPECT_EQ(replaced, 4); // locked twice in vain and once for good, and let go
    EXPECT_EQ(text(), "k = \"new\"\n");
}

TEST_F(DefaultsFileLocks, ALockFileThatIsDeletedAgainAndAgainIsGivenUp) {
    using Clock = std::chrono::steady_clock;
    const std::string path = folder + "/lock";
    const Intervention race(SystemCall::Flock, [&] {
        std::filesystem::remove(path);
        return 0;
    });
    const auto deadline = Clock::now() + std::chrono::milliseconds(20);
    EXPECT_FALSE(zel::FileLock(path, deadline).held());
    EXPECT_GE(Clock::now(), deadline);
}

} // namespace
} // namespace zel_tests
